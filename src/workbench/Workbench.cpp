#include "workbench/Workbench.h"

#include "net/CustomProxy.h"
#include "net/HttpClient.h"
#include "workbench/Product.h"

namespace Brindle {

Workbench::Workbench(const Parts& parts, SitesFile sites)
    : Sites(std::move(sites)),
      Fetcher(State, Options, Texts, parts.Loop, parts.Status),
      Emails(State, Options, Fetcher),
      Saver(State, Options, Leads, Texts, parts.Status, parts.Loop),
      Job({State, Leads, Options, Texts, Catalogue, parts.Loop, parts.Status, parts.Notices, Fetcher, Emails, Saver}) {}

void Workbench::Use(const LanguageFile& language) {
    if (language.IsEmpty())
        return;
    language.FillMessages(Texts, ProductEdition, ProductTitle());
    Leads.Captions = language.ColumnCaptions();
}

void Workbench::SetUp(EmbeddedBrowser& browser) {
    SetCustomProxy(browser, Options, Sites.BrowserUserAgent.isEmpty() ? BrowserUserAgent() : Sites.BrowserUserAgent);
}

} // namespace Brindle
