#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace Brindle {

/// What a user types as an address: without a scheme it is one of http. Blanks around it do not count.
QString TypedAddress(const QString& text);

/// The scheme of an absolute address in lower case; empty when there is none.
QString SchemeOf(QStringView address);

/// What an href leads to from a page at `base`, an absolute address (RFC 3986, section 5.2, with what browsers forgive:
/// blanks around it, line ends and tabs in it, backslashes). Nothing is encoded, dot segments stay: `NormalAddress`
/// sees to both.
QString ResolveAddress(const QString& base, const QString& href);

/// The address with path and query percent-encoded, non-ASCII characters as the bytes that they are, "%" taken to begin
/// what is encoded already (RFC 3986, appendix A).
QByteArray EncodedAddress(const QByteArray& address);

/// The address as a request names it: encoded, and where it is one of http or https, with its scheme in lower case, a
/// path, and without dot segments (RFC 3986, sections 5.2.4 and 6.2.2).
QString NormalAddress(const QString& address);

/// The address without user name and password, fit to be shown.
QString ShownAddress(const QString& address);

/// The host of an absolute address as it stands there, without login and port; one of IP version 6 in its brackets.
QString HostOf(const QString& address);

/// Scheme, host and port of an absolute address, in lower case, without login and slash (RFC 6454, section 6.2): what
/// the addresses of one server have in common. The usual port of the scheme is left out.
QString ServerOf(const QString& address);

/// The address without its fragment.
QStringView WithoutFragment(QStringView address);

/// What a browser sends as the referring address from one page to another; empty for none.
QString RefererFor(const QString& from, const QString& to);

} // namespace Brindle
