#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace Brindle {

/// Reads the header lines of a response as they come in (RFC 9110, RFC 9112) and keeps what the client needs of them.
/// What is known belongs to the last response: interim ones come before it.
class ResponseHeaders {
public:
    /// Takes the next line with its line end. Lines behind the headers are trailers and tell nothing.
    void Take(QByteArrayView line);

    /// The empty line has come.
    bool Ended() const { return ended_; }
    /// They are longer than a response needs to be; nothing more is to be read.
    bool TooLarge() const { return bytes_ > limit; }
    /// The body's end will be known without the end of the connection.
    bool EndIsKnown() const { return hasLength_ || chunked_; }
    /// The length that they give is more than there can be, and it is what says where the body ends.
    bool LengthIsImpossible() const { return lengthIsImpossible_ && !chunked_; }
    /// The body is packed. Some servers name a character set as its coding; such a body stands as it is.
    bool Encoded() const { return encoded_; }
    /// The values of Location, the first one, and of Content-Type.
    const QByteArray& Location() const { return location_; }
    const QByteArray& ContentType() const { return contentType_; }

private:
    void Start();
    void TakeField(const QByteArray& name, const QByteArray& value);

    static constexpr qsizetype limit = 1 << 20;
    qsizetype bytes_ = 0;
    bool ended_ = false;
    bool hasLength_ = false;
    bool chunked_ = false;
    bool lengthIsImpossible_ = false;
    bool encoded_ = false;
    QByteArray location_;
    QByteArray contentType_;
    QByteArray* foldable_ = nullptr; // the value that the next line may continue
};

/// A header's value as text: UTF-8 or, as values were long ago, Latin-1.
QString HeaderText(const QByteArray& value);

} // namespace Brindle
