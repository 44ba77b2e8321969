#include "WindowFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace Brindle::Test {

WindowRun::WindowRun(MessageLoop& loop, SitesFile sites, const BrowserFactory& createBrowser)
    : Loop(loop), sites_(std::move(sites)), createBrowser_(createBrowser) {
    Again();
}

void WindowRun::Again() {
    Window.reset();
    Window = std::make_unique<TfrmMain>(
        MainWindowParts{.Loop = Loop,
                        .System = System,
                        .Sites = sites_,
                        .SettingsFolder = System.SettingsFolder(),
                        .SettingsFileName = QDir(System.SettingsFolder()).filePath(u"settings.dat"_s),
                        .SitesFileName = SitesFileName,
                        .Pace = Pace,
                        .CreateBrowser = createBrowser_,
                        .Notices = &Notices});
}

void WindowRun::Show() {
    Window->show();
    if (!Until([this] { return Window->Ready(); }))
        throw std::runtime_error("the window has not come up");
}

bool WindowRun::Until(const std::function<bool()>& condition, int seconds) {
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > seconds * 1000LL)
            return false;
        Loop.WaitForMessage(100);
        Loop.ProcessMessages();
    }
    return true;
}

void WindowRun::When(const std::function<bool()>& condition, const std::function<void()>& action) const {
    auto* const look = new QTimer(Window.get());
    QObject::connect(look, &QTimer::timeout, look, [=] {
        if (!condition())
            return;
        look->stop();
        action();
    });
    look->start(5);
}

void WindowRun::Click(const char16_t* button) const {
    Control<QAbstractButton>(button)->click();
}

void WindowRun::Choose(const char16_t* selector, int index) const {
    auto* const box = Control<QComboBox>(selector);
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

void WindowRun::ChooseSite(const QString& code, const Demo::DemoServer& server) {
    const SitesFile sites = SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters());
    const SiteCatalogue catalogue = sites.Catalogue();
    const QString entry = catalogue.Find(code)->DisplayEntry();
    // The waits of a change are there for the engine: it loses a page that is asked for while its cache is emptied.
    const double pace = Loop.Pace();
    Loop.SetPace(std::max(pace, 0.5));
    Choose(u"cbxWebsites", static_cast<int>(catalogue.WebsiteURLS().indexOf(entry)));
    Loop.SetPace(pace);
    const QString base = GetCountryURL(entry);
    if (!Until(
            [&] {
                return Window->State().CurrID == code && !Window->ewbMain().Busy() &&
                       Window->ewbMain().LocationAddress().startsWith(base);
            },
            60)) // of a machine that is busy with other things, too
        throw std::runtime_error(u"the home page %1 has not come up: at %2, %3, %4"_s
                                     .arg(base, Window->ewbMain().LocationAddress(),
                                          Window->ewbMain().Busy() ? u"busy" : u"idle", Window->ewbMain().LastError())
                                     .toStdString());
    Loop.ProcessMessages(); // that a page has come is told after it has
}

bool WindowRun::GoTo(const QString& address) {
    Control<QLineEdit>(u"edtAddress")->setText(address);
    Click(u"btnGo");
    const bool come =
        Until([&] { return !Window->ewbMain().Busy() && Window->ewbMain().LocationAddress() == address; });
    Loop.ProcessMessages(); // that a page has come is told after it has
    return come;
}

std::vector<Lead> WindowRun::ShownLeads() const {
    std::vector<Lead> leads;
    const QAbstractItemModel& model = *Items().model();
    for (int row = 0; row < model.rowCount(); ++row) {
        Lead lead;
        for (int column = 0; column < FieldCount; ++column)
            lead.At(column) = model.index(row, column).data().toString();
        leads.push_back(lead);
    }
    return leads;
}

} // namespace Brindle::Test
