#pragma once

#include "demo/DemoDirectory.h"

#include <QString>
#include <QStringView>

namespace Brindle::Demo {

/// The website that a directory's details page names for a business.
enum class Web {
    None,    ///< it names none
    Plain,   ///< the website has neither an e-mail nor a contact page
    Start,   ///< e-mail on the start page
    Contact, ///< e-mails on the contact page
    Large,   ///< several contact pages
    Missing, ///< the website does not answer with a page
    Secure,  ///< an https address, where nobody answers
    Pdf      ///< a document instead of a website
};

/// A name as part of an address: "Alder & Ash's" is "alder-ash-s".
QString SlugOf(QStringView name);

/// The address of the website of the business named `name`; empty for none.
QString AddressOf(const DemoContext& context, Web website, QStringView name);

/// The e-mails that a search on that website finds, joined by ";".
QString EmailsBehind(Web website, QStringView name);

/// The map service's link for an address in a country.
QString MapLinkOf(const DemoContext& context, const QString& fullAddress, QStringView country);

} // namespace Brindle::Demo
