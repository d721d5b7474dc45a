#pragma once

#include <QByteArray>
#include <QString>

/// An encoding of text by its name, as Qt knows it or, where Qt has no tables of its own, as
/// Windows does.
class CharacterSet final
{
public:
    explicit CharacterSet(QByteArray name);

    [[nodiscard]] bool isKnown() const;

    struct Decoded
    {
        QString text;
        bool hasError = false; ///< some bytes are no text in it; replacement characters stand there
    };
    /// A byte-order mark is kept as a character. The set must be known.
    [[nodiscard]] Decoded decode(QByteArrayView bytes) const;

    struct Encoded
    {
        QByteArray bytes;
        bool hasError = false; ///< some characters do not exist in it
    };
    /// Without a byte-order mark. The set must be known.
    [[nodiscard]] Encoded encode(QStringView text) const;

private:
    QByteArray m_name;
};
