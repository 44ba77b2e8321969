#include "TeachFixture.h"

#include "adapters/Adapters.h"
#include "net/ServerTrust.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

namespace {

// The innermost element with that text, or the link with that address.
constexpr auto placeOf = uR"((what => {
    const level = text => text.replace(/\s+/g, ' ').trim();
    let found = Array.from(document.links).find(link => link.href === what);
    if (!found)
        found = Array.from(document.querySelectorAll('body *')).find(each => level(each.textContent) === what
            && each.getClientRects().length && !Array.from(each.children).some(child => level(child.textContent) === what));
    if (!found)
        found = Array.from(document.querySelectorAll('main *')).find(each => level(each.textContent).includes(what)
            && !Array.from(each.children).some(child => level(child.textContent).includes(what)));
    if (!found) return [];
    found.scrollIntoView({block: 'center'});
    const range = document.createRange();
    range.selectNodeContents(found);
    const box = range.getClientRects()[0] || found.getBoundingClientRect();
    const zoom = devicePixelRatio / %2;
    return [(box.left + box.width / 2) * zoom, (box.top + box.height / 2) * zoom];
})(%1))";

QString Quoted(QString text) {
    return u'"' + text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

} // namespace

Demo::ModernSite TeachFixture::StartSite(QStringView code) {
    Server.Start();
    for (const Demo::ModernSite& site : Server.ModernSites())
        if (site.Code == code) {
            if (site.Secure)
                TrustServer(site.Start, Server.AuthorityFile());
            return site;
        }
    throw std::runtime_error("no such directory: " + code.toString().toStdString());
}

void TeachFixture::Open(const QString& start) {
    Loop.SetPace(0.01);
    Run = std::make_unique<WindowRun>(Loop, SitesFile::Parse(Server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                                      CreateWebEngineBrowser);
    Run->Show();
    ASSERT_TRUE(Run->Until([this] { return !Run->Window->ewbMain().Busy(); }));
    const auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
    Run->Choose(u"cbxWebsites", sites->findText(u"Any website"_s));
    ASSERT_TRUE(Run->GoTo(start));
}

void TeachFixture::Teach() {
    Run->Click(u"btnTeach");
    ASSERT_TRUE(Lesson().Active()) << Lesson().Problem().toStdString();
}

void TeachFixture::SaveAs(const QString& name) {
    Run->Control<QLineEdit>(u"edtTeachName")->setText(name);
    Run->Click(u"btnTeachSave");
    ASSERT_FALSE(Lesson().Active());
}

bool TeachFixture::Harvest() {
    Run->Click(u"btnStart");
    return Run->Until([this] { return Idle(); }, 120);
}

bool TeachFixture::BarSays(const QString& what, int seconds) {
    Desk().Watch().Look(); // it would wait a little for the page to settle
    return Run->Until([&] { return Bar().contains(what); }, seconds);
}

QVariant TeachFixture::InPage(const QString& script) {
    QVariant result;
    bool answered = false;
    Run->Window->findChild<QWebEngineView*>()->page()->runJavaScript(script, [&](const QVariant& value) {
        result = value;
        answered = true;
    });
    if (!Run->Until([&] { return answered; }, 20))
        throw std::runtime_error("the page does not answer");
    return result;
}

QPointF TeachFixture::PlaceOf(const QString& textOrLink) {
    const QVariantList place =
        InPage(QString::fromUtf16(placeOf).arg(Quoted(textOrLink)).arg(Run->Window->devicePixelRatioF())).toList();
    if (place.size() != 2)
        throw std::runtime_error("the page does not show " + textOrLink.toStdString());
    return {place[0].toDouble(), place[1].toDouble()};
}

bool TeachFixture::PointAt(const QString& textOrLink, int what) {
    const QPointF place = PlaceOf(textOrLink);
    QTest::qWait(200); // the marks follow the page
    bool asked = false;
    const auto byMenu = Lesson().AskField;
    Lesson().AskField = [&](const std::vector<Field>&) {
        asked = true;
        return what;
    };
    QTest::mouseClick(&Overlay(), Qt::LeftButton, {}, place.toPoint());
    const bool done = Run->Until([&] { return asked; }, 20);
    Lesson().AskField = byMenu;
    return done;
}

QRectF TeachFixture::MarkOf(const QString& caption) const {
    for (const PageOverlay::Mark& mark : Overlay().Marks())
        if (mark.Caption == caption && Overlay().rect().contains(mark.Place.center().toPoint()))
            return mark.Place;
    return {};
}

} // namespace Brindle::Test
