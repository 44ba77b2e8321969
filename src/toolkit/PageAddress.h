#pragma once

#include <QString>
#include <QStringView>

namespace Brindle {

/// What a user types as an address: without a scheme it is one of http. Blanks around it do not count.
QString TypedAddress(const QString& text);

/// The scheme of an absolute address in lower case; empty when there is none.
QString SchemeOf(QStringView address);

/// What an href leads to from a page at `base`, an absolute address (RFC 3986, section 5.2, with what browsers forgive:
/// blanks around it, line ends and tabs in it, backslashes). Nothing is encoded, dot segments stay for the client.
QString ResolveAddress(const QString& base, const QString& href);

/// The address without its fragment.
QStringView WithoutFragment(QStringView address);

/// What a browser sends as the referring address from one page to another; empty for none.
QString RefererFor(const QString& from, const QString& to);

} // namespace Brindle
