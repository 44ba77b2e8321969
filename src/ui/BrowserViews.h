#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/MessageLoop.h"

#include <QString>
#include <QTextBrowser>

#include <functional>
#include <memory>

namespace Brindle {

/// An embedded browser and what the user sees of it.
struct ShownBrowser {
    std::unique_ptr<EmbeddedBrowser> Browser;
    QWidget* View; ///< to be given a parent
};

/// Makes a browser that keeps cookies and cache in a folder, or nowhere when it is empty.
using BrowserFactory = std::function<ShownBrowser(MessageLoop& loop, const QString& profileFolder)>;

/// Shows the pages of a browser without a view of its own as plain text with links, without pictures and styles.
class StaticPageView : public QTextBrowser {
    Q_OBJECT

public:
    explicit StaticPageView(EmbeddedBrowser& browser);

protected:
    /// Nothing that a page names is loaded.
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

/// A browser without scripts in a `StaticPageView`.
ShownBrowser CreateStaticBrowser(MessageLoop& loop, const QString& profileFolder);

#ifdef BRINDLE_HAS_WEBENGINE
/// The Chromium engine.
ShownBrowser CreateWebEngineBrowser(MessageLoop& loop, const QString& profileFolder);
#endif

#ifdef BRINDLE_HAS_IE
/// Whether the system's web browser control can show pages; a Windows without its browser has the control alone.
bool SystemHasPageEngine();

/// The system's web browser control. Cookies and cache are the system's; the folder is not used.
ShownBrowser CreateIeBrowser(MessageLoop& loop, const QString& profileFolder);
#endif

} // namespace Brindle
