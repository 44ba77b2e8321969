#include "discovery/NextPage.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// A list in a language that goes on by one of its words, from its first, a middle and its last page.
class EveryLanguage : public testing::TestWithParam<const char16_t*> {};

const QString host = u"https://www.guide.example"_s;

// How directories number their pages.
QString AddressOf(int scheme, int page) {
    switch (scheme) {
    case 0:
        return u"/search?q=x&page=%1"_s.arg(page);
    case 1:
        return page == 1 ? u"/town/trade/"_s : u"/town/trade/page/%1/"_s.arg(page);
    case 2:
        return u"/town/trade-%1.html"_s.arg(page);
    default:
        return u"/list?start=%1"_s.arg((page - 1) * 20);
    }
}

QString Numbers(int scheme, int current, int last) {
    QString row;
    for (int page = std::max(1, current - 2); page <= std::min(last, current + 2); ++page)
        row += page == current ? u"<b>%1</b> "_s.arg(page)
                               : u"<a href='%2'>%1</a> "_s.arg(page).arg(AddressOf(scheme, page));
    return row;
}

QString ReadNext(const QString& pager, int scheme, int current) {
    QString records;
    for (int i = 1; i <= 6; ++i)
        records += u"<li><h3><a href='/b/%1'>Alba %1</a></h3><a href='/b/%1'>Details</a></li>"_s.arg(i);
    const PageTree page(u"<!DOCTYPE html><body><nav><a href='/a'>A</a></nav><ul>"_s + records + u"</ul>"_s + pager +
                        u"<footer><a href='/about'>B</a></footer>"_s);
    return FindNextPage(page, PageLines(page), host + AddressOf(scheme, current)).Address;
}

TEST_P(EveryLanguage, GoesOnByItsWords) {
    for (const QString& word : QString::fromUtf16(GetParam()).split(u'|'))
        for (int scheme = 0; scheme < 4; ++scheme)
            for (const int current : {1, 4, 9}) {
                const QString numbers = Numbers(scheme, current, 9);
                const QString link = u"<a href='"_s + AddressOf(scheme, current + 1) + u"'"_s;
                const bool goesOn = current < 9;
                for (const QString& next : {QString(link + u">"_s + word + u" »</a>"_s),
                                            QString(link + u" aria-label='"_s + word + u"'><svg></svg></a>"_s),
                                            QString(link + u" title='"_s + word + u"'><i class=icon></i></a>"_s),
                                            QString(link + u"><img src=n.gif alt='"_s + word + u"'></a>"_s)})
                    EXPECT_EQ(
                        ReadNext(u"<div>"_s + numbers + (goesOn ? next : QString()) + u"</div>"_s, scheme, current),
                        goesOn ? QString(host + AddressOf(scheme, current + 1)) : QString())
                        << word.toStdString() << ' ' << scheme << ' ' << current << ' ' << next.toStdString();
            }
}

INSTANTIATE_TEST_SUITE_P(Words, EveryLanguage,
                         testing::Values(u"Next|Next page", u"Weiter|Nächste Seite", u"Suivant|Page suivante",
                                         u"Siguiente|Página siguiente", u"Successiva|Pagina successiva",
                                         u"Próxima|Página seguinte", u"Volgende", u"Następna|Następna strona",
                                         u"Další|Další stránka", u"Ďalšia", u"Következő", u"Următoarea",
                                         u"Nästa|Nästa sida", u"Neste side", u"Næste", u"Seuraava", u"Järgmine",
                                         u"Nākamā", u"Kitas", u"Sonraki|İleri", u"Επόμενη|Επόμενη σελίδα",
                                         u"Следующая|Вперед", u"Наступна", u"Следваща", u"Sljedeća|Iduća", u"Naslednja",
                                         u"次へ|次のページ", u"下一页|下一頁", u"다음", u"التالي", u"הבא", u"ถัดไป",
                                         u"Trang sau|Tiếp theo", u"Berikutnya", u"Següent"));

} // namespace
} // namespace Brindle
