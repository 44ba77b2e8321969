#include "demo/DemoPage.h"

#include <QUrl>

#include <algorithm>
#include <httplib.h>
#include <stdexcept>

namespace Brindle::Demo {

namespace {

constexpr QStringView documentTemplate = uR"(<!DOCTYPE html>
<html lang="{{language}}">
<head>
<meta charset="utf-8">
<title>{{title}}</title>
<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
* { box-sizing: border-box }
body { margin: 0; font: 15px/1.45 "DejaVu Sans", Arial, sans-serif; color: #222; background: #f3f4f6 }
a { color: #1b5fae; text-decoration: none }
a:hover { text-decoration: underline }
h1, h2, h3 { margin: .2em 0; line-height: 1.2 }
h3 { font-size: 1.05em }
form { margin: 0 }
input, select { font: inherit; padding: .45em .6em; border: 1px solid #b8bdc6; border-radius: 4px }
button, input[type=submit] { font: inherit; padding: .45em 1.2em; border: 0; border-radius: 4px; color: #fff;
  background: {{accent}}; cursor: pointer }
table { border-collapse: collapse }
.masthead { background: {{accent}}; color: #fff; padding: .9em 1.4em }
.masthead a { color: #fff }
.masthead .brand { font-size: 1.5em; font-weight: bold; margin-right: 1.5em }
.topics { background: #fff; border-bottom: 1px solid #d9dce2; padding: .5em 1.4em }
.topics a { margin-right: 1.2em }
.search { padding: 1em 1.4em }
.page { display: flex; gap: 1.4em; padding: 0 1.4em 1.4em; align-items: flex-start }
.page > :first-child { flex: 1 }
.card { background: #fff; border: 1px solid #d9dce2; border-radius: 6px; padding: .8em 1.1em; margin: 0 0 .8em }
.sponsored { background: #fffbe8; border: 1px solid #e6d9a0; border-radius: 6px; padding: .7em 1em; margin: 0 0 .8em;
  max-width: 16em; font-size: .9em }
.legal { background: #2b2f36; color: #c9ced6; padding: 1.2em 1.4em; font-size: .85em }
.legal a { color: #c9ced6; margin-right: 1em }
{{css}}</style>
</head>
{{body}}
</html>
)";

struct Advert {
    QStringView Heading;
    QStringView Text;
    QStringView Slug;
};

constexpr Advert adverts[] = {
    {u"Moving this summer?", u"Two movers & a truck from $89 an hour. Boxes free of charge.", u"two-movers"},
    {u"Free roof inspection", u"Leaks? Missing shingles? We are there within 24 hours.", u"dry-roofs"},
    {u"Invoices made easy", u"Send your first ten invoices for nothing, then 5 a month.", u"easy-invoices"},
    {u"Your shop online in an hour", u"No card needed. \"Simply brilliant\", says Lucy of Lucy's Lamps.", u"shop-hour"},
    {u"Tyres changed while you wait", u"Drive in, coffee, drive out: < 30 minutes.", u"quick-tyres"},
};

} // namespace

QString EscapeHtml(QStringView text) {
    return text.toString().toHtmlEscaped();
}

QString PercentEncoded(const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString Fill(QStringView pageTemplate, const std::vector<Slot>& slots) {
    QString result;
    result.reserve(pageTemplate.size() * 2);
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = pageTemplate.indexOf(u"{{", from);
        const qsizetype close = open < 0 ? -1 : pageTemplate.indexOf(u"}}", open);
        if (close < 0)
            break;
        const QStringView name = pageTemplate.sliced(open + 2, close - open - 2);
        const auto slot = std::find_if(slots.begin(), slots.end(), [name](const Slot& s) { return s.Name == name; });
        if (slot == slots.end())
            throw std::logic_error("page template: nothing for " + name.toString().toStdString());
        result.append(pageTemplate.sliced(from, open - from));
        result.append(slot->Html);
        from = close + 2;
    }
    result.append(pageTemplate.sliced(from));
    return result;
}

QString Document(const Look& look, const QString& title, const QString& body) {
    return Fill(documentTemplate, {{u"language", look.Language},
                                   {u"title", title},
                                   {u"accent", look.Accent},
                                   {u"css", RawHtml{look.Css}},
                                   {u"body", RawHtml{body}}});
}

QString AdvertBox(const QString& businesses, int number) {
    const Advert& advert = adverts[static_cast<std::size_t>(number) % std::size(adverts)];
    return Fill(uR"(<div class="sponsored" data-slot="{{number}}"><b>{{heading}}</b><p>{{text}}</p>
<a rel="nofollow" href="{{businesses}}/plain/{{slug}}/?from=slot{{number}}&amp;paid=1">Learn more</a></div>
)",
                {{u"number", number},
                 {u"heading", advert.Heading.toString()},
                 {u"text", advert.Text.toString()},
                 {u"slug", advert.Slug.toString()},
                 {u"businesses", businesses}});
}

QString TrackingScript(int number) {
    return Fill(uR"(<script>
// <div> & </div> stand here as they are: nothing in a script is markup.
(function (w, d) {
  w.visits = w.visits || [];
  w.visits.push({ page: {{number}}, at: Date.now(), wide: w.innerWidth > 900 && d.body !== null });
  var box = '<span class="beacon" title="a > b">' + {{number}} + '<\/span>';
  if (box.length < 10) d.title = box;
})(window, document);
</script>
)",
                {{u"number", number}});
}

namespace {

void SendBytes(httplib::Response& response, QByteArray body, const std::string& type) {
    const auto size = static_cast<std::size_t>(body.size());
    // A provider instead of a body: the library would pack a body with the slowest setting that there is.
    response.set_content_provider(
        size, type, [body = std::move(body)](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            return sink.write(body.constData() + offset, length);
        });
}

} // namespace

void SendPage(httplib::Response& response, const QString& html, int status) {
    response.status = status;
    SendBytes(response, html.toUtf8(), "text/html; charset=utf-8");
}

void SendPage(httplib::Response& response, const QByteArray& body, const QByteArray& charset) {
    SendBytes(response, body, "text/html; charset=" + charset.toStdString());
}

void SendRedirect(httplib::Response& response, const QString& address) {
    response.set_redirect(address.toStdString());
}

QString Parameter(const httplib::Request& request, const char* name) {
    return QString::fromStdString(request.get_param_value(name));
}

QString PathGroup(const httplib::Request& request, std::size_t group) {
    return QString::fromStdString(request.matches[group].str());
}

} // namespace Brindle::Demo
