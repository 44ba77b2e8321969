#include "demo/modern/ModernDirectory.h"

#include "demo/DemoPage.h"

#include <QCryptographicHash>

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView documentTemplate = uR"(<!DOCTYPE html>
<html lang="{{language}}">
<head>
<meta charset="utf-8">
<title>{{title}} | {{brand}}</title>
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta property="og:title" content="{{title}}">
<link rel="icon" href="/icon.svg" type="image/svg+xml">
<style>
* { box-sizing: border-box } body { margin: 0; font: 15px/1.5 "DejaVu Sans", sans-serif; color: #1f2430; background: #f6f7f9 }
a { color: #0b5cad; text-decoration: none } header, footer, main, .bar { padding: .8em 1.4em }
header { background: #fff; border-bottom: 1px solid #dde1e7 } footer { background: #252b36; color: #c4cad4; font-size: .85em }
footer a { color: #c4cad4 } main { max-width: 62em } ul { padding: 0 } li { list-style: none }
</style>
{{head}}</head>
{{body}}
</html>
)";

constexpr QStringView detailsTemplate = uR"(<body><header><a href="/">{{brand}}</a></header>
<main><nav class="{{trail}}"><a href="/">{{brand}}</a> › <a href="/search">{{category}}</a></nav>
<article class="{{entry}}" itemscope itemtype="https://schema.org/LocalBusiness">
<h1 itemprop="name">{{name}}</h1>
<p itemprop="address" itemscope itemtype="https://schema.org/PostalAddress"><span itemprop="streetAddress">{{street}}</span><br>
<span itemprop="postalCode">{{code}}</span> <span itemprop="addressLocality">{{city}}</span> <span itemprop="addressRegion">{{state}}</span></p>
<p><a href="tel:{{tel}}" itemprop="telephone">{{phone}}</a></p>
{{more}}</article></main>
<footer>© {{brand}}</footer></body>)";

} // namespace

std::vector<ModernBusiness> ModernDirectory::All(const DemoContext& context) const {
    return ModernBusinessesOf(kind_.Region, kind_.PerPage * kind_.Pages, context);
}

ModernDirectory::Page ModernDirectory::PageOf(const DemoContext& context, int number) const {
    Page page{context, {}, std::clamp(number, 1, kind_.Pages), kind_.Pages};
    const std::vector<ModernBusiness> all = All(context);
    const auto begin = all.begin() + (page.Number - 1) * kind_.PerPage;
    page.Businesses.assign(begin, begin + kind_.PerPage);
    return page;
}

QString ModernDirectory::C(QStringView name) const {
    if (!changed_)
        return name.toString();
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex();
    return u"ui-" + QString::fromLatin1(hash.first(6)).replace(u'0', u'g');
}

QString ModernDirectory::PagePath(int number) {
    return number == 1 ? u"/search"_s : u"/search?page=" + QString::number(number);
}

QString ModernDirectory::Document(const QString& title, const QString& head, const QString& body) const {
    return Fill(documentTemplate, {{u"language", kind_.Language.toString()},
                                   {u"title", title},
                                   {u"brand", kind_.Brand.toString()},
                                   {u"head", RawHtml{head}},
                                   {u"body", RawHtml{body}}});
}

QString ModernDirectory::DetailsBody(const DemoContext&, const ModernBusiness& business) const {
    QString more;
    if (!business.Email.isEmpty())
        more += Fill(u"<p><a itemprop=\"email\" href=\"mailto:{{email}}\">{{email}}</a></p>\n",
                     {{u"email", business.Email}});
    if (!business.Website.isEmpty())
        more += Fill(u"<p><a itemprop=\"url\" rel=\"nofollow\" href=\"{{site}}\">{{site}}</a></p>\n",
                     {{u"site", business.Website}});
    QString tel = business.Phone;
    tel.remove(u' ').remove(u'-').remove(u'(').remove(u')');
    return Fill(detailsTemplate, {{u"brand", kind_.Brand.toString()},
                                  {u"trail", C(u"trail")},
                                  {u"entry", C(u"entry")},
                                  {u"category", business.Category},
                                  {u"name", business.Name},
                                  {u"street", business.Street},
                                  {u"code", business.PostalCode},
                                  {u"city", business.City},
                                  {u"state", business.State},
                                  {u"tel", tel},
                                  {u"phone", business.Phone},
                                  {u"more", RawHtml{more}}});
}

Lead ModernDirectory::ListedLead(const DemoContext& context, const ModernBusiness& business) const {
    return LeadOf(business, context.Base + DetailsPath(business));
}

void ModernDirectory::AddRoutes(httplib::Server& server, const DemoContext& context) {
    server.Get("/", [this](const httplib::Request&, httplib::Response& response) {
        SendPage(response,
                 Document(kind_.Brand.toString(), {},
                          Fill(u"<body><header><b>{{brand}}</b></header><main><form action=\"/search\"><input "
                               u"name=\"what\"> <input name=\"where\"> <button>→</button></form></main></body>",
                               {{u"brand", kind_.Brand.toString()}})));
    });
    server.Get("/search", [this, context](const httplib::Request& request, httplib::Response& response) {
        const QString number = Parameter(request, "page");
        const Page page = PageOf(context, number.isEmpty() ? 1 : number.toInt());
        SendPage(response, Document(kind_.Label.toString(), Head(page), Body(page)));
    });
    server.Get("/biz/([-a-z0-9]+)", [this, context](const httplib::Request& request, httplib::Response& response) {
        const QString slug = PathGroup(request, 1);
        for (const ModernBusiness& business : All(context))
            if (business.Slug == slug) {
                SendPage(response, Document(business.Name, {}, DetailsBody(context, business)));
                return;
            }
        response.status = 404;
    });
    AddOwnRoutes(server, context);
}

QString ModernDirectory::FirstResultPage(const DemoContext& context) const {
    return context.Base + u"/search";
}

QString ModernDirectory::SearchAddress(const DemoContext& context) const {
    return context.Base + u"/search?what={what}&where={where}";
}

std::vector<Lead> ModernDirectory::PlantedLeads(const DemoContext& context, bool withDetails) const {
    std::vector<Lead> leads;
    for (const ModernBusiness& business : All(context)) {
        Lead& lead = leads.emplace_back(ListedLead(context, business));
        if (withDetails) {
            lead.Email = business.Email;
            lead.Website = business.Website;
        }
    }
    return leads;
}

} // namespace Brindle::Demo
