#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <vector>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace Brindle::Demo {

/// The text as it stands in HTML, in an element's text as well as in a quoted attribute value.
QString EscapeHtml(QStringView text);

/// The text as one part of an address: everything but letters, digits and "-._~" as %XX of its UTF-8 form.
QString PercentEncoded(const QString& text);

/// Markup that goes into a page as it is.
struct RawHtml {
    QString Text;
};

/// What a placeholder stands for: a text, which is escaped, or markup, which is not.
struct Slot {
    Slot(QStringView name, const QString& text) : Name(name), Html(EscapeHtml(text)) {}
    Slot(QStringView name, int number) : Name(name), Html(QString::number(number)) {}
    Slot(QStringView name, RawHtml html) : Name(name), Html(std::move(html.Text)) {}

    QStringView Name;
    QString Html;
};

/// The template with every {{name}} replaced by its slot. Throws std::logic_error for a placeholder without a slot.
QString Fill(QStringView pageTemplate, const std::vector<Slot>& slots);

/// What all pages of one directory have in common.
struct Look {
    QString Brand;    ///< name of the directory
    QString Accent;   ///< CSS colour of header and buttons
    QString Language; ///< language tag of the pages: "en", "it"
    QString Css;      ///< the directory's own rules, behind the common ones
};

/// A whole HTML5 document: head with title and style sheet, and the body as given (tag included).
QString Document(const Look& look, const QString& title, const QString& body);

/// Clutter as real pages have it, different for different numbers: an advert box with a link to a business website, a
/// script with tags and angle brackets in its strings. Neither holds the words "main" and "footer" nor an e-mail.
QString AdvertBox(const QString& businesses, int number);
QString TrackingScript(int number);

/// Sends a page, UTF-8.
void SendPage(httplib::Response& response, const QString& html, int status = 200);
/// Sends a page in another character set: `body` is already encoded, `charset` goes into the header.
void SendPage(httplib::Response& response, const QByteArray& body, const QByteArray& charset);
/// Sends a redirect to an absolute address.
void SendRedirect(httplib::Response& response, const QString& address);
/// A parameter of the query; empty when it is not there.
QString Parameter(const httplib::Request& request, const char* name);
/// A group of the route's pattern, 1-based, percent-decoded.
QString PathGroup(const httplib::Request& request, std::size_t group);

} // namespace Brindle::Demo
