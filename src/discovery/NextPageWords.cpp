#include "discovery/NextPageWords.h"

#include "discovery/WordTable.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// In the order: English, German, French, Spanish, Catalan, Portuguese, Italian, Dutch, Polish, Czech, Slovak,
// Hungarian, Romanian, Swedish, Danish and Norwegian, Finnish, Estonian, Latvian, Lithuanian, Turkish, Greek, Russian,
// Ukrainian, Bulgarian, Croatian and Serbian, Slovenian, Japanese, Chinese, Korean, Arabic, Hebrew, Persian, Thai,
// Vietnamese, Indonesian and Malay, Hindi.
constexpr auto strongWords =
    u"next|next page|next results|next results page|go to next page|go to the next page|show next|next set|"
    u"next listings|view next page|next entries|older posts|older entries|page next|nextpage|to next page|"
    u"nächste|nächste seite|nächsten|naechste seite|zur nächsten seite|gehe zur nächsten seite|nächste treffer|"
    u"nächste ergebnisse|nächste seite anzeigen|vorwärts|seite vor|eine seite vor|folgende seite|ältere "
    u"beiträge|ältere einträge|"
    u"suivant|suivante|suivants|page suivante|suivantes|résultats suivants|la page suivante|aller à la page "
    u"suivante|articles plus anciens|"
    u"siguiente|siguientes|página siguiente|pagina siguiente|siguiente página|ir a la página siguiente|"
    u"resultados siguientes|página próxima|"
    u"següent|següents|pàgina següent|"
    u"próximo|próxima|próximos|próxima página|proxima página|proxima pagina|seguinte|página seguinte|próx|"
    u"successivo|successiva|successivi|pagina successiva|prossima|prossimo|prossima pagina|pagina seguente|seguente|"
    u"vai alla pagina successiva|"
    u"volgende|volgende pagina|naar volgende pagina|naar de volgende pagina|volgende resultaten|"
    u"następna|następny|następne|następna strona|kolejna|kolejna strona|następne wyniki|nastepna|przejdź do następnej "
    u"strony|"
    u"další|další strana|další stránka|další stránku|následující|následující strana|následující stránka|"
    u"ďalšia|ďalší|ďalšia strana|ďalšia stránka|nasledujúca|nasledujúca strana|"
    u"következő|következő oldal|"
    u"următoarea|următorul|pagina următoare|urmatoarea|urmatorul|pagina urmatoare|următoare|"
    u"nästa|nästa sida|"
    u"næste|næste side|neste|neste side|"
    u"seuraava|seuraava sivu|seuraavat|"
    u"järgmine|järgmine lehekülg|järgmine leht|"
    u"nākamā|nākamā lapa|nākamais|"
    u"kitas|kitas puslapis|sekantis|sekantis puslapis|"
    u"sonraki|sonraki sayfa|ileri|i̇leri|"
    u"επόμενη|επόμενο|επόμενα|επόμενη σελίδα|επομενη|"
    u"следующая|следующая страница|следующие|следующий|на следующую страницу|след|след стр|вперёд|вперед|"
    u"наступна|наступна сторінка|наступні|наст|"
    u"следваща|следваща страница|напред|"
    u"iduća|sljedeća|sljedeća stranica|sljedeće|sledeća|sledeća strana|sledeća stranica|следећа|следећа страна|следећа "
    u"страница|"
    u"naslednja|naslednja stran|"
    u"次へ|次|次のページ|次ページ|次のページへ|次頁|次を表示|次の|次を見る|"
    u"下一页|下一頁|下页|下頁|后一页|後一頁|往后|下一页>|翻到下一页|"
    u"다음|다음 페이지|다음페이지|다음 목록|"
    u"التالي|التالية|الصفحة التالية|"
    u"הבא|הבאה|לעמוד הבא|הדף הבא|העמוד הבא|לדף הבא|"
    u"بعدی|صفحه بعد|صفحه بعدی|"
    u"ถัดไป|หน้าถัดไป|หน้าต่อไป|"
    u"trang sau|trang tiếp|trang tiếp theo|tiếp theo|trang kế|trang kế tiếp|kế tiếp|"
    u"berikutnya|halaman berikutnya|selanjutnya|halaman selanjutnya|seterusnya|halaman seterusnya|"
    u"अगला|अगला पृष्ठ|अगले";

constexpr auto weakWords =
    u"older|older articles|previous entries|previous posts|more|more results|see more|"
    u"show more|load more|view more|more listings|show more results|load more results|see more "
    u"results|forward|continue|"
    u"weiter|weitere|mehr|mehr anzeigen|mehr laden|weitere ergebnisse|weitere treffer|mehr ergebnisse|"
    u"plus|voir plus|afficher plus|plus de résultats|voir plus de résultats|afficher plus de résultats|charger plus|"
    u"articles précédents|"
    u"más|ver más|mostrar más|cargar más|más resultados|ver más resultados|mostrar más resultados|entradas "
    u"antiguas|entradas anteriores|adelante|"
    u"més|més resultats|"
    u"mais|ver mais|carregar mais|mais resultados|mostrar mais|avançar|posts antigos|postagens mais antigas|"
    u"avanti|altri|altri risultati|mostra altri|carica altri|articoli precedenti|vecchi articoli|post più vecchi|"
    u"verder|meer|meer resultaten|meer laden|toon meer|ouder|oudere berichten|"
    u"dalej|więcej|pokaż więcej|więcej wyników|starsze wpisy|starsze|załaduj więcej|"
    u"dál|více|vpřed|načíst další|zobrazit další|další výsledky|starší příspěvky|"
    u"ďalej|viac|načítať ďalšie|zobraziť ďalšie|"
    u"tovább|több|továbbiak|továbbiak betöltése|több betöltése|további találatok|több találat|régebbi bejegyzések|"
    u"înainte|mai mult|încarcă mai multe|vezi mai multe|mai multe rezultate|"
    u"visa fler|ladda fler|visa mer|fler resultat|äldre inlägg|framåt|"
    u"vis flere|indlæs flere|last inn flere|vis mere|flere resultater|ældre indlæg|eldre innlegg|"
    u"lisää|näytä lisää|lataa lisää|vanhemmat|edasi|rohkem|tālāk|vairāk|toliau|daugiau|"
    u"daha fazla|daha fazla göster|daha fazla yükle|devam|eski yazılar|"
    u"περισσότερα|περισσότερα αποτελέσματα|φόρτωση περισσότερων|παλαιότερα|"
    u"далее|дальше|ещё|показать ещё|показать еще|загрузить ещё|загрузить еще|предыдущие записи|старые записи|"
    u"далі|більше|показати ще|завантажити ще|ще|"
    u"dalje|više|prikaži više|učitaj još|učitaj više|naprej|več|"
    u"もっと見る|さらに表示|続きを見る|以前の記事|古い記事|過去の記事|"
    u"更多|加载更多|載入更多|查看更多|더보기|더 보기|"
    u"المزيد|تحميل المزيد|عرض المزيد|إظهار المزيد|עוד|טען עוד|הצג עוד|تالی|بیشتر|เพิ่มเติม|ดูเพิ่มเติม|โหลดเพิ่มเติม|"
    u"xem thêm|tải thêm|sau|tiếp|lebih banyak|lainnya|lihat lainnya|lanjut|muat lebih banyak|tampilkan lebih banyak|और";

// The things of which there is a next one that is no page of a list.
constexpr auto otherThings = std::to_array<QStringView>(
    {u"article", u"post",    u"month",   u"week",      u"day",     u"year",  u"image",   u"photo",    u"picture",
     u"slide",   u"event",   u"story",   u"chapter",   u"thread",  u"topic", u"product", u"item",     u"video",
     u"episode", u"game",    u"issue",   u"song",      u"project", u"level", u"step",    u"question", u"monat",
     u"woche",   u"tag",     u"artikel", u"beitrag",   u"bild",    u"thema", u"mois",    u"semaine",  u"jour",
     u"mes",     u"semana",  u"mese",    u"settimana", u"maand",   u"foto",  u"miesiąc", u"měsíc",    u"месяц",
     u"статья",  u"тема",    u"запись",  u"記事",      u"月",      u"翌月",  u"篇",      u"章",       u"主题",
     u"集",      u"subject", u"message"});

WordTable<bool> Split(QStringView list) {
    WordTable<bool> words;
    for (const QStringView word : list.split(u'|', Qt::SkipEmptyParts))
        words[word] = true;
    return words;
}

// "next 20 results": the number and what is counted say nothing more.
QStringView WithoutCount(QStringView words) {
    const auto digit = std::find_if(words.begin(), words.end(), [](QChar c) { return c.isDigit(); });
    return digit == words.end() ? QStringView() : words.first(digit - words.begin()).trimmed();
}

} // namespace

NextWord NextWordIn(QStringView words) {
    static const WordTable<bool> strong = Split(strongWords);
    static const WordTable<bool> weak = Split(weakWords);
    if (words.isEmpty() || words.size() > 60)
        return NextWord::None;
    if (strong.Contains(words))
        return NextWord::Strong;
    if (weak.Contains(words))
        return NextWord::Weak;
    const QStringView begin = words.size() <= 30 ? WithoutCount(words) : QStringView();
    if (strong.Contains(begin))
        return NextWord::Strong;
    if (weak.Contains(begin))
        return NextWord::Weak;
    // "Load more restaurants": what is loaded says nothing more.
    const qsizetype last = words.lastIndexOf(u' ');
    if (last > 0 && weak.Contains(words.first(last)) && words.first(last).contains(u' ') && !NamesOtherNext(words))
        return NextWord::Weak;
    // "Next page: 3 of 10", "Next page of restaurants"
    if ((words.startsWith(u"next page ") || words.startsWith(u"next results ")) && !NamesOtherNext(words))
        return NextWord::Strong;
    return NextWord::None;
}

bool NamesOtherNext(QStringView words) {
    for (const QStringView thing : otherThings) {
        const qsizetype at = words.indexOf(thing);
        if (at < 0)
            continue;
        const bool isWord = thing.front().unicode() >= 0x2E80 ||
                            ((at == 0 || !words[at - 1].isLetter()) &&
                             (at + thing.size() == words.size() || !words[at + thing.size()].isLetter()));
        if (isWord)
            return true;
    }
    return false;
}

} // namespace Brindle
