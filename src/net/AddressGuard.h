#pragma once

#include "core/PageOrigin.h"
#include "net/NumericAddress.h"

#include <QString>

#include <optional>

namespace Brindle {

/// Where an address stands. `Unusable` ones, such as multicast and reserved addresses, are nobody's web server.
enum class AddressKind { Public, Private, LinkLocal, Loopback, Unusable };

/// The kind of a numeric address (RFC 6890 and the registries of special-purpose addresses that it began); one of
/// version 6 that carries one of version 4 is of the latter's kind. Shared address space of providers is private.
AddressKind KindOf(const NumericAddress& address);

/// The kind of a host as far as its text tells: in figures, or a name for this machine (RFC 6761, section 6.3).
std::optional<AddressKind> KindOfHost(QStringView host);

/// The kind of the place at which a page stands; a server that is known by name alone is taken for a public one.
AddressKind KindOfOrigin(const PageOrigin& origin);

/// What a page may lead to: public addresses, and those of its own kind, so that one of this machine or of a company's
/// network may lead on there, and no other page leads into them.
bool MayLeadTo(AddressKind from, AddressKind to);

/// Why a page may not lead to a host: one line, `numeric` being where the host stands.
QString RefusalText(const QString& host, const QString& numeric);

} // namespace Brindle
