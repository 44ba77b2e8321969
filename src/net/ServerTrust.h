#pragma once

#include <QString>
#include <QStringView>

namespace Brindle {

/// From now on the certificates of the server of an https address are vouched for by the authority in a PEM file
/// instead of those that everybody trusts; no other server gains by it. For the demo's own addresses: takes servers on
/// 127.0.0.1 alone and ignores others. On the thread that fetches.
void TrustServer(const QString& url, const QString& authorityFile);

/// The authority's file for the server of an address; empty when the usual ones vouch for it.
QString AuthorityOf(const QString& url);

} // namespace Brindle
