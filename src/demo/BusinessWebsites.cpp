#include "demo/BusinessWebsites.h"

#include "demo/DemoPage.h"

#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

const Look look{u"Business website"_s, u"#37526b"_s, u"en"_s, {}};

constexpr QStringView pageTemplate = uR"(<body>
<div class="masthead"><span class="brand">{{name}}</span> <a href="{{start}}">Home</a></div>
<div class="search"><p>Family owned since 1987. Open Monday to Saturday, 8 to 18 h. Follow us @{{slug}} on the usual
channels.</p></div>
<div class="page"><div class="card">
{{content}}
</div></div>
<div class="legal">&copy; {{name}}. Prices per hour @ 85.00, taxes extra.</div>
</body>)";

QStringView PathOf(WebsiteKind kind) {
    switch (kind) {
    case WebsiteKind::Plain:
        return u"plain";
    case WebsiteKind::Start:
        return u"start";
    case WebsiteKind::Contact:
        return u"contact-page";
    case WebsiteKind::Large:
        return u"large";
    case WebsiteKind::Missing:
        break;
    }
    return u"gone";
}

// "two-movers" is the business "Two Movers".
QString NameOf(const QString& slug) {
    QString name = slug;
    bool first = true;
    for (QChar& c : name) {
        if (first)
            c = c.toUpper();
        first = c == u'-';
        if (first)
            c = u' ';
    }
    return name;
}

QString Address(QStringView user, const QString& slug) {
    return user + u"@"_s + slug + u".example"_s;
}

void Serve(httplib::Server& server, const QString& base, WebsiteKind kind, QStringView page, QStringView content) {
    const QString path = u'/' + PathOf(kind) + u"/([-A-Za-z0-9]+)/" + page;
    server.Get(path.toStdString(), [=](const httplib::Request& request, httplib::Response& response) {
        const QString slug = PathGroup(request, 1);
        const QString start = base + u'/' + PathOf(kind) + u'/' + slug + u'/';
        const std::vector<Slot> slots{{u"name", NameOf(slug)},
                                      {u"slug", slug},
                                      {u"start", start},
                                      {u"info", Address(u"info", slug)},
                                      {u"office", Address(u"office", slug)},
                                      {u"OFFICE", Address(u"Office", slug)},
                                      {u"sales", Address(u"sales.team", slug)},
                                      {u"hidden", Address(u"hidden", slug)}};
        std::vector<Slot> pageSlots = slots;
        pageSlots.emplace_back(u"content", RawHtml{Fill(content, slots)});
        SendPage(response, Document(look, NameOf(slug), Fill(pageTemplate, pageSlots)));
    });
}

} // namespace

QString WebsiteOf(const DemoContext& context, WebsiteKind kind, const QString& slug) {
    return context.Businesses + u'/' + PathOf(kind) + u'/' + slug + u'/';
}

QString EmailsOn(WebsiteKind kind, const QString& slug) {
    switch (kind) {
    case WebsiteKind::Start:
        return Address(u"office", slug);
    case WebsiteKind::Contact:
        return Address(u"info", slug) + u';' + Address(u"sales.team", slug);
    case WebsiteKind::Large:
        return Address(u"office", slug) + u';' + Address(u"info", slug) + u';' + Address(u"sales.team", slug);
    case WebsiteKind::Plain:
    case WebsiteKind::Missing:
        break;
    }
    return {};
}

void AddBusinessRoutes(httplib::Server& server, const QString& base) {
    Serve(server, base, WebsiteKind::Plain, u"", uR"(<h1>{{name}}</h1><p>Drop in: we are on Main Street, next to the
bakery. <a href="{{start}}prices.html">Prices</a></p>)");

    Serve(server, base, WebsiteKind::Start, u"", uR"(<h1>{{name}}</h1>
<p>Write to <a href="mailto:{{office}}">{{office}}</a> or to {{OFFICE}}. Not an address: {{slug}}@localhost.</p>)");

    Serve(server, base, WebsiteKind::Contact, u"", uR"(<h1>{{name}}</h1>
<p>See <a href="{{start}}prices.html">our prices</a> or <a class="btn" href="{{start}}write-to-us.html">Contact</a>
us.</p>)");
    Serve(server, base, WebsiteKind::Contact, u"write-to-us\\.html", uR"(<h1>Write to us</h1>
<p>Office: {{info}}. Orders: <a href="mailto:{{sales}}">{{sales}}</a>.</p>)");

    Serve(server, base, WebsiteKind::Large, u"", uR"(<h1>{{name}}</h1>
<p>{{office}} <a href="prices.html">Prices</a> <a href="contact-relative.html">Write</a>
<a href='{{start}}team.html'>Customer Service</a>
<a href="{{start}}missing-contact.html">Old form</a>
<a href="{{start}}who.html">About us</a>
<a href="{{start}}survey/">Tell us</a></p>)");
    Serve(server, base, WebsiteKind::Large, u"contact-relative\\.html", u"<p>{{hidden}}</p>");
    Serve(server, base, WebsiteKind::Large, u"team\\.html", u"<h1>Our team</h1><p>{{info}}, {{OFFICE}}</p>");
    Serve(server, base, WebsiteKind::Large, u"who\\.html", u"<h1>About {{name}}</h1><p>Nobody writes to us.</p>");
    Serve(server, base, WebsiteKind::Large, u"survey/", u"<h1>Two questions</h1><p>Answers to {{sales}}</p>");

    server.Get("/maps", [](const httplib::Request& request, httplib::Response& response) {
        SendPage(response, Document(look, u"Map"_s,
                                    Fill(u"<body><div class=\"masthead\"><span class=\"brand\">Map</span></div>"
                                         u"<div class=\"search\">You are looking for: <b>{{query}}</b></div></body>",
                                         {{u"query", Parameter(request, "q")}})));
    });
}

} // namespace Brindle::Demo
