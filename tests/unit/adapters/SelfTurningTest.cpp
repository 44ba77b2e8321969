#include "HarvestBench.h"
#include "ScriptedBrowser.h"
#include "adapters/Adapters.h"
#include "core/HarvestDriver.h"

#include <gtest/gtest.h>

#ifdef Q_OS_LINUX
#include <malloc.h>
#endif

// Directories that turn their own pages, page after page: every turn waits inside the tick that made it, so a tick that
// ran inside another's wait would deepen the stack with each page.

namespace Brindle::Test {
namespace {

using namespace Qt::StringLiterals;

constexpr int pageCount = 300;

// Bytes; where the system's allocator does not tell, the stack alone is watched.
size_t HeapInUse() {
#ifdef Q_OS_LINUX
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

struct Site {
    QStringView Code;
    QString (*Page)(int page);
    QString (*LinkText)(int page);
};

QString PagineMailPage(int page) {
    return u"search-title <ul class=\"pagination\"><strong>%1</strong><a title=\"Vai a pagina %2\">%2</a><big></big></a><footer>"_s
        .arg(page)
        .arg(page < pageCount ? page + 1 : 1);
}

QString VirgilioPage(int page) {
    return u"conteggi <a>%1</a> <a>Avanti \u203A</a> vf_footer"_s.arg(page);
}

const Site sites[] = {
    {SiteCode::PagineMail, PagineMailPage, [](int page) { return QString::number(page < pageCount ? page + 1 : 1); }},
    {SiteCode::Virgilio, VirgilioPage, [](int page) { return page < pageCount ? u"Avanti \u203A"_s : u"Fine"_s; }},
};

TEST(SelfTurningDirectory, ThreeHundredPagesLeaveStackAndMemoryWhereTheyWere) {
    for (const Site& site : sites) {
        HarvestBench bench(site.Code);
        ScriptedBrowser browser;
        HarvestDriver driver(bench.Job, browser);
        const auto address = [](int page) -> QString { return u"http://a.test/" + QString::number(page); };
        for (int page = 1; page <= pageCount; ++page) {
            browser.Pages.insert(address(page), site.Page(page));
            browser.LinksOf.insert(address(page), {{site.LinkText(page), address(page % pageCount + 1)}});
        }
        std::vector<const char*> stack;
        std::vector<size_t> memory;
        stack.reserve(size_t{2} * pageCount);
        memory.reserve(size_t{2} * pageCount);
        browser.OnRead = [&] {
            bench.Status.Panels = {};
            browser.Calls = {};
            const char here = 0;
            stack.push_back(&here);
            memory.push_back(HeapInUse());
        };
        browser.Navigate(address(1));
        driver.Start();
        bench.Loop.RunToIdle();
        ASSERT_EQ(stack.size(), static_cast<size_t>(pageCount)) << site.Code.toUtf8().data();
        EXPECT_EQ(stack[9], stack.back());
        EXPECT_LT(memory.back(), memory[9] + 4096);
        EXPECT_FALSE(driver.Running());
    }
}

} // namespace
} // namespace Brindle::Test
