#include "tools/checks/FindingKinds.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto error = Severity::Error;
constexpr auto warning = Severity::Warning;
constexpr auto note = Severity::Note;
constexpr auto always = CheckLevel::Links;
constexpr auto thorough = CheckLevel::Everything;

constexpr std::array kinds{
    FindingKind{"LINK01"_L1, error, always,
                QT_TRANSLATE_NOOP("FindingKinds", "Linked file missing"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Readers who follow the link find nothing; a picture stays empty. Correct "
                    "the link or bring the file back.")},
    FindingKind{"LINK02"_L1, warning, always, QT_TRANSLATE_NOOP("FindingKinds", "Link to a folder"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "The folder has no index page, so readers see a list of files or an error. "
                    "Link to a page in it.")},
    FindingKind{
        "LINK03"_L1, warning, always,
        QT_TRANSLATE_NOOP("FindingKinds", "Link in other letter case"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Where letter case counts, as on many servers, the file is not found. "
                          "Spell the link as the file is spelled.")},
    FindingKind{
        "LINK04"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Several files of that name"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Files whose names differ only in letter case overwrite each other on "
                          "Windows. Rename all but one.")},
    FindingKind{
        "LINK05"_L1, warning, always,
        QT_TRANSLATE_NOOP("FindingKinds", "Place in the page missing"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The link opens the page at its top instead of the place meant. Correct "
                          "what stands behind # or give the place that id.")},
    FindingKind{"LINK06"_L1, warning, always,
                QT_TRANSLATE_NOOP("FindingKinds", "Link out of the project"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "What lies outside the project is not packed with it, so the link will be "
                    "dead on the server. Bring the file into a book's folder.")},
    FindingKind{
        "LINK07"_L1, warning, always,
        QT_TRANSLATE_NOOP("FindingKinds", "Link from the root of a disk"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "It is good on one machine only. Write the link relative to the page.")},
    FindingKind{
        "LINK08"_L1, note, always, QT_TRANSLATE_NOOP("FindingKinds", "Identifier of no page here"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Another project may publish the identifier; the inter-book link report "
                          "tells. If none does, correct the link.")},
    FindingKind{"BOOK01"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Book file missing"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Without it the book has no pages for the tools. Bring the file back from "
                    "_Backup or remove the book from the project.")},
    FindingKind{
        "BOOK02"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Book folder missing"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The table of contents names a folder that is not there. Correct the "
                          "book's folder or remove the book.")},
    FindingKind{"BOOK03"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Acronym used twice"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Links, keywords and quick navigation mean a book by its acronym; with two "
                    "of the same they may lead to the wrong one. Give one book another.")},
    FindingKind{"BOOK04"_L1, warning, always, QT_TRANSLATE_NOOP("FindingKinds", "Page in no book"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Readers do not find it in any table of contents, yet it is packed. Add it "
                    "to a book's outline or delete the file.")},
    FindingKind{"BOOK05"_L1, note, always, QT_TRANSLATE_NOOP("FindingKinds", "Page listed twice"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "The page stands at several places of the outlines, and search shows only "
                    "one of them. Remove the others unless that is meant.")},
    FindingKind{"BOOK06"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Page file missing"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "The outline lists a page whose file is not there. Bring the file back or "
                    "remove the page from the outline.")},
    FindingKind{"BOOK07"_L1, error, always,
                QT_TRANSLATE_NOOP("FindingKinds", "Page outside its book's folder"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Such a page is neither built nor packed. Move the file into the folder of "
                    "its book.")},
    FindingKind{
        "BOOK08"_L1, warning, always,
        QT_TRANSLATE_NOOP("FindingKinds", "Page file in other letter case"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Where letter case counts, as on many servers, the page is not found. "
                          "Spell it in the outline as the file is spelled.")},
    FindingKind{"PAGE01"_L1, warning, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Page without a title"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Search results and browser tabs show the file name instead. Give the page "
                    "a <title>.")},
    FindingKind{"PAGE02"_L1, warning, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Empty page"),
                QT_TRANSLATE_NOOP("FindingKinds",
                                  "There is nothing for readers to see. Write the page, or "
                                  "delete it.")},
    FindingKind{
        "PAGE03"_L1, note, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Language not given"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Screen readers and hyphenation guess the language. Write it into the "
                          "<html> tag: lang=\"en\".")},
    FindingKind{
        "PAGE04"_L1, note, thorough,
        QT_TRANSLATE_NOOP("FindingKinds", "Other language than the project"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The page says it is in another language, perhaps because it was copied. "
                          "Translate it or correct its lang attribute.")},
    FindingKind{"PAGE05"_L1, warning, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Encoding not declared"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Browsers guess, and letters beyond ASCII may come out wrong. Declare it: "
                    "<meta charset=\"utf-8\">.")},
    FindingKind{
        "PAGE06"_L1, error, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Wrong encoding declared"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Browsers believe the declaration and show wrong letters. Correct it, or "
                          "save the page in the encoding it declares.")},
    FindingKind{
        "PAGE07"_L1, error, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Damaged text"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Some bytes are no text in the page's encoding; readers see replacement "
                          "marks there. Write these letters again.")},
    FindingKind{
        "PAGE08"_L1, warning, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Id given twice"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Links to it reach the first place only. Give each place an id of its "
                          "own.")},
    FindingKind{
        "PAGE09"_L1, warning, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Element not closed"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "What follows is shown as part of it, for example in bold to the end of "
                          "the page. Add the end tag.")},
    FindingKind{
        "PAGE10"_L1, note, thorough, QT_TRANSLATE_NOOP("FindingKinds", "End tag of nothing"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Browsers pass over it, but often a start tag was lost. Remove it or add "
                          "the start tag.")},
    FindingKind{"PAGE11"_L1, error, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Comment not closed"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Everything behind it is hidden from readers. End the comment with -->.")},
    FindingKind{
        "PAGE12"_L1, error, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Page ends inside a tag"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The file was cut off, or a > is missing; what stands behind is lost. "
                          "Complete the page.")},
    FindingKind{
        "PAGE13"_L1, error, thorough,
        QT_TRANSLATE_NOOP("FindingKinds", "Marker of another project"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The reference names a project that is not this one, as copying by hand "
                          "leaves it. Write this project's name.")},
    FindingKind{
        "PAGE14"_L1, error, thorough,
        QT_TRANSLATE_NOOP("FindingKinds", "NUL character in the page"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The file is damaged, or no text at all; programs may read it only up to "
                          "there. Save it again as text.")},
    FindingKind{
        "PAGE15"_L1, error, always, QT_TRANSLATE_NOOP("FindingKinds", "Page cannot be read"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "Nothing of it is in the links, the search words or these checks. See to "
                          "the file and its permissions.")},
    FindingKind{"ASSET01"_L1, warning, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Picture without alternative text"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "Readers who cannot see it, and search, learn nothing of it. Add alt with a "
                    "few words, or alt=\"\" where it only decorates.")},
    FindingKind{"ASSET02"_L1, note, thorough, QT_TRANSLATE_NOOP("FindingKinds", "Unused file"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "No page or style sheet refers to it, yet it is packed. Delete it unless a "
                    "script uses it.")},
    FindingKind{
        "ASSET03"_L1, warning, thorough,
        QT_TRANSLATE_NOOP("FindingKinds", "Part of the page from outside"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "The page loads it over the network, so it is missing wherever there is "
                          "none. Bring the file into the book's folder.")},
    FindingKind{
        "DATA01"_L1, error, always,
        QT_TRANSLATE_NOOP("FindingKinds", "Project file cannot be read"),
        QT_TRANSLATE_NOOP("FindingKinds",
                          "What it holds is missing from everything that was built. An earlier "
                          "version may lie in _Backup.")},
    FindingKind{"DATA02"_L1, warning, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Light and data disagree"),
                QT_TRANSLATE_NOOP(
                    "FindingKinds",
                    "The light says that a tool's data are up to date, but they are missing or "
                    "older than what they were made from. Run the tool.")},
    FindingKind{"DATA03"_L1, note, thorough,
                QT_TRANSLATE_NOOP("FindingKinds", "Packed copy out of date"),
                QT_TRANSLATE_NOOP("FindingKinds",
                                  "The server would get earlier pages. Pack the project again.")},
};

constexpr std::array severities{
    std::pair{QT_TRANSLATE_NOOP("FindingKinds", "Note"), "Note"_L1},
    std::pair{QT_TRANSLATE_NOOP("FindingKinds", "Warning"), "Warning"_L1},
    std::pair{QT_TRANSLATE_NOOP("FindingKinds", "Error"), "Error"_L1}};

QString tr(const char *text)
{
    return QCoreApplication::translate("FindingKinds", text);
}

} // namespace

QString FindingKind::name() const
{
    return tr(englishName);
}

QString FindingKind::explanation() const
{
    return tr(englishExplanation);
}

std::span<const FindingKind> findingKinds()
{
    return kinds;
}

const FindingKind *findingKind(QStringView code)
{
    const auto *const found = std::find_if(
        kinds.begin(), kinds.end(), [code](const FindingKind &kind) { return kind.code == code; });
    return found == kinds.end() ? nullptr : found;
}

QString nameOf(Severity severity)
{
    return tr(severities[static_cast<size_t>(severity)].first);
}

QLatin1StringView tagOf(Severity severity)
{
    return severities[static_cast<size_t>(severity)].second;
}
