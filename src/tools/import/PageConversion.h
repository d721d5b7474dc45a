#pragma once

#include <QString>
#include <QStringView>

/// What an imported file is, by its name.
enum class ImportFormat {
    Html,     ///< a page already; its bytes stay
    Text,     ///< .txt
    Markdown, ///< .md, .markdown
    Table,    ///< .csv, .tsv
    Archive,  ///< .zip
    Other,    ///< nothing that a page is made of
};
ImportFormat importFormat(QStringView fileName);
/// Text, Markdown and tables, which become pages.
bool isConverted(ImportFormat format);

/// A page made of something else.
struct ConvertedPage
{
    QString title; ///< "" when the text has none
    QString body;  ///< HTML
};

/// Plain text: the first line is title and heading, blank lines part the paragraphs, a paragraph
/// with an indented line or a tab inside keeps its lines and blanks.
ConvertedPage pageFromText(QStringView text);
/// Markdown with the tables, task lists and strike-outs of GitHub; HTML in it stays. The title is
/// that of the front matter, else the first heading. Headings get the identifiers that links to
/// them expect.
ConvertedPage pageFromMarkdown(QStringView text);
/// Comma-, semicolon-, tab- or bar-separated values: one table, its first row the header. Quotes
/// may hold separators and line ends. ".tsv" is always split at tabs.
ConvertedPage pageFromTable(QStringView text, bool onlyTabs);
/// One of these, by the format. A page without a title is called like the file, in a heading too.
ConvertedPage convertedPage(ImportFormat format, QStringView text, const QString &fileName);

/// All of it, in the project's language.
QString wholePage(const ConvertedPage &page, const QString &projectLanguage);
