#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView cardTemplate =
    uR"(<div class="{{card}}"><h3 class="{{title}}"><a href="{{link}}">{{name}}</a></h3>
<span class="{{topic}}">{{category}}</span><address>{{address}}</address><a class="{{call}}" href="{{tel}}">{{phone}}</a>{{site}}</div>
)";

// One page of results; the others come by script from "/more?page=N", which answers with markup, empty behind the last.
constexpr QStringView bodyTemplate = uR"(<body><header><b>{{brand}}</b> <a href="/">Home</a></header>
<main><h1>Results near you</h1><div id="list" class="{{list}}">
{{cards}}</div>
{{button}}</main>
<footer>{{footer}}</footer>
<script>
(function () {
  var page = 1, last = {{last}}, busy = false, list = document.getElementById('list');
  function more() {
    if (busy || page >= last) return;
    busy = true;
    fetch('/more?page=' + (page + 1)).then(function (answer) { return answer.text(); }).then(function (html) {
      page += 1;
      list.insertAdjacentHTML('beforeend', html);
      busy = false;
      {{then}}
    });
  }
  {{when}}
})();
</script></body>)";

class ScriptedLook : public ModernDirectory {
public:
    using ModernDirectory::ModernDirectory;

protected:
    QString Cards(const Page& page) const {
        QString cards;
        for (const ModernBusiness& b : page.Businesses)
            cards += Fill(cardTemplate, {{u"card", C(u"place-card")},
                                         {u"title", C(u"place-title")},
                                         {u"topic", C(u"place-topic")},
                                         {u"call", C(u"place-call")},
                                         {u"link", DetailsPath(b)},
                                         {u"name", b.Name},
                                         {u"category", b.Category},
                                         {u"address", b.FullAddress},
                                         {u"tel", TelLink(b.Phone)},
                                         {u"phone", b.Phone},
                                         {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                               : u" <a rel=\"noopener\" href=\"" +
                                                                                     b.Website + u"\">Website</a>"}}});
        return cards;
    }

    QString BodyWith(const Page& page, const QString& button, QStringView then, QStringView when,
                     const QString& footer) const {
        return Fill(bodyTemplate, {{u"brand", Is().Brand.toString()},
                                   {u"list", C(u"place-list")},
                                   {u"cards", RawHtml{Cards(page)}},
                                   {u"button", RawHtml{button}},
                                   {u"footer", footer},
                                   {u"last", page.Last},
                                   {u"then", RawHtml{then.toString()}},
                                   {u"when", RawHtml{when.toString()}}});
    }

    void AddOwnRoutes(httplib::Server& server, const DemoContext& context) override {
        server.Get("/more", [this, context](const httplib::Request& request, httplib::Response& response) {
            const int number = Parameter(request, "page").toInt();
            SendPage(response, number >= 2 && number <= Is().Pages ? Cards(PageOf(context, number)) : QString());
        });
    }
};

class LoadMoreLook : public ScriptedLook {
public:
    LoadMoreLook()
        : ScriptedLook({u"demo-load-more", u"Load more", u"Northern Listings", u"CA", u"en-CA", 10, 4, true}) {}

protected:
    QString Body(const Page& page) const override {
        return BodyWith(page,
                        u"<button id=\"more\" type=\"button\" class=\"" + C(u"load-more") + u"\">Load more</button>\n",
                        u"if (page >= last) document.getElementById('more').remove();",
                        u"document.getElementById('more').addEventListener('click', more);",
                        u"Northern Listings, 1 Index Ave, Ottawa, ON K1A 0A1 · (613) 555-0199"_s);
    }
};

class ScrollingLook : public ScriptedLook {
public:
    ScrollingLook()
        : ScriptedLook(
              {u"demo-scrolling", u"Endless scrolling", u"Down Under Directory", u"AU", u"en-AU", 10, 4, true}) {}

protected:
    QString Body(const Page& page) const override {
        return BodyWith(page, u"<div id=\"end\" style=\"height: 700px\">Loading…</div>\n"_s,
                        u"if (page >= last) document.getElementById('end').remove();",
                        u"window.addEventListener('scroll', function () { if (window.innerHeight + window.scrollY > "
                        "document.documentElement.scrollHeight - 800) more(); });",
                        u"Down Under Directory Pty Ltd, Level 1, 2 Index Street, Perth WA 6000 · (08) 7010 9999"_s);
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeLoadMoreLook() {
    return std::make_unique<LoadMoreLook>();
}

std::unique_ptr<ModernDirectory> MakeScrollingLook() {
    return std::make_unique<ScrollingLook>();
}

} // namespace Brindle::Demo
