#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

namespace Brindle {

/// The text of a page. The character set is that of the Content-Type header, else of a byte-order mark, else of a
/// <meta> element in the first 1024 bytes (HTML, section 13.2.3.2), else UTF-8 when the bytes are valid UTF-8, else
/// Windows-1252. Labels are those of the WHATWG Encoding standard, so "iso-8859-1" means Windows-1252; a label that is
/// not known counts as none. A byte-order mark is never part of the text.
QString DecodePage(const QByteArray& bytes, const QByteArray& contentType = {});

/// The same of all that a device still gives. What can be read again from its beginning, as a file can, is decoded in
/// pieces, so a large one never stands in memory as bytes and as text at once.
QString DecodePage(QIODevice& device);

/// The charset parameter of a Content-Type value, lower-cased and without quotes; empty when there is none.
QByteArray CharsetOf(const QByteArray& contentType);

} // namespace Brindle
