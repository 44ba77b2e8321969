#include "net/ResponseHeaders.h"

#include "toolkit/Ascii.h"

#include <QList>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <utility>

namespace Brindle {

namespace {

bool NamesACoding(const QByteArray& contentEncoding) {
    static constexpr std::array<QByteArrayView, 7> codings{"gzip", "x-gzip",   "deflate",   "br",
                                                           "zstd", "compress", "x-compress"};
    const QList<QByteArray> names = contentEncoding.toLower().split(',');
    return std::any_of(names.begin(), names.end(), [](const QByteArray& name) {
        return std::find(codings.begin(), codings.end(), name.trimmed()) != codings.end();
    });
}

// A whole number, yet none that fits into 63 bits.
bool IsImpossibleLength(const QByteArray& value) {
    bool fits = false;
    value.toLongLong(&fits);
    return !fits && !value.isEmpty() &&
           std::all_of(value.begin(), value.end(), [](char c) { return Ascii::IsDigit(c); });
}

} // namespace

void ResponseHeaders::Take(QByteArrayView rawLine) {
    bytes_ += rawLine.size();
    if (TooLarge())
        return;
    const QByteArray line = rawLine.trimmed().toByteArray();
    QByteArray* const folded = std::exchange(foldable_, nullptr);
    if (line.startsWith("HTTP/")) {
        Start();
    } else if (line.isEmpty()) {
        ended_ = true;
    } else if (folded && (rawLine.front() == ' ' || rawLine.front() == '\t')) {
        // RFC 9112, section 5.2
        *folded = QByteArray(*folded + ' ' + line).trimmed();
        foldable_ = folded;
    } else if (const qsizetype colon = line.indexOf(':'); colon > 0 && !ended_) {
        // What comes behind the headers is a trailer, which tells nothing of the body (RFC 9110, section 6.5.1).
        TakeField(line.first(colon).trimmed().toLower(), line.sliced(colon + 1).trimmed());
    }
}

void ResponseHeaders::Start() {
    const qsizetype bytes = bytes_;
    *this = ResponseHeaders();
    bytes_ = bytes;
}

void ResponseHeaders::TakeField(const QByteArray& name, const QByteArray& value) {
    if (name == "location" && location_.isEmpty())
        *(foldable_ = &location_) = value;
    else if (name == "content-type")
        *(foldable_ = &contentType_) = value;
    else if (name == "content-encoding")
        encoded_ = encoded_ || NamesACoding(value);
    else if (name == "transfer-encoding")
        chunked_ = true;
    else if (name == "content-length") {
        hasLength_ = true;
        lengthIsImpossible_ = lengthIsImpossible_ || IsImpossibleLength(value);
    }
}

QString HeaderText(const QByteArray& value) {
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = decode(value);
    return decode.hasError() ? QString::fromLatin1(value) : text;
}

} // namespace Brindle
