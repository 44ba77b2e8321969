#pragma once

#include "demo/DemoDirectory.h"

#include <QString>

namespace Brindle::Demo {

/// What a search for e-mails meets on a business's website.
enum class WebsiteKind {
    Plain,   ///< neither an e-mail nor a contact page
    Start,   ///< one e-mail on the start page, twice, in different letter case
    Contact, ///< none on the start page, two on the contact page, which is linked by an absolute http address
    Large,   ///< one on the start page; contact pages behind single quotes and by their visible text, one of them
             ///< missing, one linked relatively (it is not followed), one without a new address
    Missing  ///< the website does not answer with a page
};

/// Address of the website of a business, with a trailing slash. Any slug of letters, digits and "-" is served.
QString WebsiteOf(const DemoContext& context, WebsiteKind kind, const QString& slug);

/// The e-mails that a search on that website finds, joined by ";".
QString EmailsOn(WebsiteKind kind, const QString& slug);

/// Registers the websites and the map service's page.
void AddBusinessRoutes(httplib::Server& server, const QString& base);

} // namespace Brindle::Demo
