#pragma once

#include <QString>
#include <QStringView>

namespace Brindle {

/// Host and port of an address of http or https, in lower case and without a leading "www."; empty for others.
QString HostOfAddress(QStringView address);

/// Whether two addresses belong to one site: the hosts are the same or share their name below the public ending
/// ("m.dir.example.co.uk" and "example.co.uk"); of numeric hosts and of localhost the port must be the same too.
bool IsSameSite(QStringView one, QStringView other);

/// The same of what `HostOfAddress` gives.
bool IsSameHost(const QString& one, const QString& other);

/// Whether an address leads to the home page of its host.
bool IsHomeAddress(QStringView address);

/// Resolves a link; empty when it is none of http or https with a host. "www.…" without a scheme is taken for http.
QString WebAddress(const QString& base, QStringView href);

/// Without "mailto:", its questions and percent signs; empty when it is no address.
QString MailAddress(QStringView text);

} // namespace Brindle
