#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <QTextLayout>

#include <array>

class QPalette;

/// Colours the source of a page: tags, attributes, values, comments, character references, and the
/// content of scripts and styles. Colours are made from the palette, so that they suit light and
/// dark; lines that are very long stay plain, so that typing in them does.
class HtmlHighlighter final : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    static constexpr qsizetype longestLine = 5'000; ///< characters; longer ones get no colours

    HtmlHighlighter(QTextDocument *document, const QPalette &palette);

    /// Takes the colours from another palette.
    void usePalette(const QPalette &palette);

protected:
    void highlightBlock(const QString &line) override;

private:
    enum Look { Tag, Attribute, Value, Comment, Entity, Raw, LookCount };
    void makeFormats(const QPalette &palette);
    void colour(qsizetype from, qsizetype to, Look look);
    void scan(QStringView line);
    void keepAside();

    qsizetype inText(QStringView line, qsizetype at);
    qsizetype inComment(QStringView line, qsizetype at);
    qsizetype inDeclaration(QStringView line, qsizetype at);
    qsizetype inTag(QStringView line, qsizetype at);
    qsizetype inValue(QStringView line, qsizetype at, QChar quote);
    qsizetype inRaw(QStringView line, qsizetype at);
    qsizetype openTag(QStringView line, qsizetype at);

    std::array<QTextCharFormat, LookCount> m_formats;
    int m_state = 0;        ///< of the line being coloured
    bool m_isAside = false; ///< its colours are kept beside its layout
    QList<QTextLayout::FormatRange> m_aside;
};
