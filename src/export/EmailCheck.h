#pragma once

#include <QString>
#include <QStringList>

namespace Brindle {

/// Whether a text can be an e-mail address that reaches somebody: the mailbox of a plain dot-atom (RFC 5321, section
/// 4.1.2; RFC 5322, section 3.2.3), at most 64 characters before the "@" and 254 in all, a domain of at least two
/// labels under a known top-level domain, and no name of an image or another file of a website.
bool CanBeEmail(const QString& address);

/// The domain of an address in lower case, as name servers know it (ASCII, RFC 5890); empty when it has none.
QString DomainOfEmail(const QString& address);

/// The part of a host name that its owner registered ("shop.example.co.uk": "example.co.uk"); the host itself where
/// that is not known.
QString RegisteredDomain(const QString& host);

/// The addresses of a text (separated by ";", "," or blanks) that can be ones, each once, those of the business's own
/// website first.
QStringList UsableEmails(const QString& emails, const QString& website);

} // namespace Brindle
