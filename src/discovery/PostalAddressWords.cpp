#include "discovery/PostalAddressWords.h"

#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

// Words that stand before the name of a street.
constexpr QStringView streetPrefixes =
    u"rue|avenue|av|av.|ave|boulevard|bd|bd.|boul|boul.|bvd|place|pl|pl.|chemin|ch.|che|route|rte|rte.|allée|allee|"
    u"allées|quai|impasse|imp.|cours|square|passage|sentier|faubourg|esplanade|montée|ruelle|rond-point|voie|zone|za|"
    u"zi|zac|chaussée|lieu-dit|lotissement|résidence|parc|"
    u"calle|c/|cl|cl.|avenida|avda|avda.|avd|avd.|av|plaza|pza|pza.|plza|paseo|pº|pso|carretera|ctra|ctra.|camino|"
    u"cno|ronda|rambla|travesía|glorieta|urbanización|urb.|urb|polígono|pol.|carrer|avinguda|plaça|passeig|rúa|jirón|"
    u"jr.|carrera|cra|cra.|kra|cr.|transversal|diagonal|calzada|boulevard|blvd|blvd.|privada|prolongación|prol.|"
    u"circuito|callejón|autopista|autovía|c.|"
    u"rua|r.|avenida|travessa|tv.|praça|pç.|alameda|al.|largo|lg.|estrada|est.|rodovia|rod.|beco|quinta|"
    u"via|viale|v.le|vle|piazza|p.zza|p.za|piazzale|p.le|corso|c.so|vicolo|strada|str.|contrada|c.da|lungomare|"
    u"località|loc.|borgo|salita|galleria|frazione|fraz.|lungotevere|largo|calata|"
    u"ul|ul.|ulica|ulicy|aleja|al.|aleje|plac|pl.|os.|osiedle|rondo|skwer|"
    u"ulice|náměstí|nám.|námestie|třída|tř.|trieda|nábřeží|cesta|trg|put|bulevar|šetalište|obala|"
    u"strada|bulevardul|bd.|b-dul|bdul|calea|șoseaua|şoseaua|sos.|șos.|aleea|piața|splaiul|intrarea|"
    u"ул|ул.|улица|пр.|пр-т|проспект|просп.|пер.|переулок|пл.|площадь|наб.|набережная|шоссе|ш.|бул.|бульвар|бул|вул.|"
    u"вулиця|площа|пров.|провулок|"
    u"οδός|οδ.|λεωφόρος|λεωφ.|λ.|πλατεία|πλ.|"
    u"jalan|jl|jl.|jln|jln.|lorong|gang|persiaran|lebuh|"
    u"đường|phố|đ.|ngõ|ถนน|ถ.|ซอย|ซ.|شارع|طريق|רחוב|רח'|שדרות|שד'|triq|sráid|"
    u"straße|strasse|am|an|im|zum|zur|auf|unter";
// Words behind it.
constexpr QStringView streetSuffixes =
    u"street|st|st.|str|str.|avenue|ave|ave.|av|road|rd|rd.|lane|ln|ln.|drive|dr|dr.|drv|boulevard|blvd|blvd.|highway|"
    u"hwy|hwy.|court|ct|ct.|place|pl|pl.|square|sq|sq.|terrace|ter|ter.|terr|way|wy|parkway|pkwy|pkwy.|circle|cir|"
    u"cir.|crescent|cres|cres.|close|row|quay|mews|trail|trl|turnpike|pike|parade|pde|esplanade|grove|gardens|walk|"
    u"hill|alley|loop|plaza|expressway|expy|freeway|fwy|broadway|promenade|strand|green|bypass|crossing|xing|route|rte|"
    u"yard|rise|concession|sideroad|line|wharf|embankment|centre|arcade|view|vale|gate|park|marg|nagar|chowk|bazaar|"
    u"straße|strasse|str.|weg|platz|pl.|allee|gasse|ring|damm|ufer|chaussee|markt|hof|steig|promenade|graben|kai|"
    u"straat|laan|plein|gracht|kade|singel|dijk|dreef|"
    u"gatan|vägen|torget|gränd|gata|gate|gt.|veien|vegen|vej|gade|plads|allé|torv|stræde|alle|vägen|"
    u"katu|tie|kuja|aukio|polku|"
    u"utca|u.|út|útja|tér|tere|körút|krt.|krt|köz|sétány|sor|rakpart|fasor|"
    u"tänav|maantee|puiestee|tn|mnt|pst|iela|bulvāris|prospekts|gatve|šoseja|gatvė|g.|pr.|prospektas|alėja|plentas|"
    u"ulica|cesta|trg|ulice|náměstí|třída|"
    u"caddesi|cad.|cad|cd.|cd|sokak|sokağı|sok.|sok|sk.|bulvarı|blv.|bul.|mahallesi|mah.|mh.|meydanı|yolu|"
    u"улица|ул.|проспект|переулок|площадь|шоссе|бульвар|вулиця|"
    u"rruga|stræti|gata|vegur|braut";
// Ends of words that are a street's name by themselves.
constexpr QStringView streetEndings[] = {
    u"straße", u"strasse", u"str.",  u"weg",    u"platz",  u"gasse", u"allee", u"damm",   u"ufer",  u"chaussee",
    u"markt",  u"steig",   u"ring",  u"graben", u"straat", u"laan",  u"plein", u"gracht", u"kade",  u"singel",
    u"dijk",   u"dreef",   u"gatan", u"vägen",  u"torget", u"gränd", u"gata",  u"gaten",  u"veien", u"vegen",
    u"vej",    u"gade",    u"plads", u"torvet", u"stræde", u"katu",  u"tie",   u"kuja",   u"aukio", u"kaari",
    u"väylä",  u"stræti",  u"vegur", u"braut",  u"brücke", u"allé",  u"gate",  u"plass",  u"väg",   u"stieg",
    u"zeile",  u"pfad",    u"leitn", u"hof",    u"-rue",   u"'rue",
};
// Beginnings of words of a script that sets no blanks: road, lane, village, by-road.
constexpr QStringView thaiBeginnings[] = {u"ถนน", u"ซอย", u"หมู่", u"ตรอก"};
constexpr QStringView bareEndings[] = {u"丁目", u"番地", u"番",   u"号", u"號", u"路", u"街",
                                       u"巷",   u"弄",   u"大道", u"로", u"길", u"町", u"通り"};
constexpr QStringView unitWords = u"suite|ste|ste.|unit|apt|apt.|apartment|floor|fl|fl.|room|rm|rm.|bldg|bldg.|"
                                  u"building|bureau|office|level|lot|shop|local|penthouse|#|no.|n|s|e|w|ne|nw|se|sw|n.|"
                                  u"s.|e.|w.|n.e.|n.w.|s.e.|s.w.|north|south|east|west|nord|sud|est|ouest|o.|ouest";

enum Role : int { None = 0, Before = 1, Behind = 2, Unit = 4 };

constexpr qsizetype longestWord = 24;

const QHash<QStringView, int>& Roles() {
    static const auto roles = [] {
        QHash<QStringView, int> all;
        const auto add = [&all](QStringView words, Role role) {
            for (const QStringView word : words.split(u'|'))
                all[word] |= role;
        };
        add(streetPrefixes, Before);
        add(streetSuffixes, Behind);
        add(unitWords, Unit);
        return all;
    }();
    return roles;
}

// A word of a text: letters, digits and what joins them; a full stop at its end belongs to it.
struct Word {
    qsizetype Begin = 0;
    qsizetype End = 0;
    int Roles = None;
    bool Compound = false; ///< "Hauptstraße"
    bool Named = false;    ///< begins with a capital letter or a letter of a script that has none
    bool Number = false;   ///< begins with a digit
};

bool IsJoin(QChar c) {
    return c == u'-' || c == u'\'' || c == u'’' || c == u'/' || c == u'.' || c == u'º' || c == u'ª';
}

// The next word from `at` on; its end is `at` when there is none.
Word NextWord(QStringView text, qsizetype at) {
    Word word;
    while (at < text.size() && !text[at].isLetterOrNumber() && text[at] != u'#')
        ++at;
    word.Begin = at;
    const bool ideographs = at < text.size() && IsIdeograph(text[at]);
    while (at < text.size() &&
           (text[at].isLetterOrNumber() || text[at].isMark() || (IsJoin(text[at]) && at > word.Begin) ||
            (text[at] == u'#' && at == word.Begin)) &&
           (ideographs || !IsIdeograph(text[at])))
        ++at;
    // Joins at the end do not belong to it, but for one full stop or the slash of "C/".
    while (at > word.Begin + 1 && IsJoin(text[at - 1]) && IsJoin(text[at - 2]))
        --at;
    word.End = at;
    if (word.End == word.Begin)
        return word;
    const QChar first = text[word.Begin];
    word.Number = first.isDigit();
    word.Named = first.isUpper() || (first.isLetter() && !first.isLower());
    // "d'Arlon", "l'Alzette"
    if (!word.Named && word.End - word.Begin > 2 &&
        (text[word.Begin + 1] == u'\'' || text[word.Begin + 1] == u'\u2019'))
        word.Named = text[word.Begin + 2].isUpper();
    if (word.End - word.Begin > longestWord)
        return word;
    std::array<QChar, longestWord> folded;
    const qsizetype size = word.End - word.Begin;
    std::transform(text.begin() + word.Begin, text.begin() + word.End, folded.begin(),
                   [](QChar c) { return c.toLower(); });
    const QStringView lower(folded.data(), size);
    word.Roles = Roles().value(lower);
    if (word.Roles == None && (lower.back() == u'-' || lower.back() == u',' || lower.back() == u'/'))
        word.Roles = Roles().value(lower.chopped(1));
    if (ideographs) {
        word.Compound = std::any_of(std::begin(bareEndings), std::end(bareEndings),
                                    [lower](QStringView ending) { return lower.contains(ending); });
        return word;
    }
    if (first.unicode() >= 0x0E00 && first.unicode() < 0x0E80)
        word.Compound = std::any_of(std::begin(thaiBeginnings), std::end(thaiBeginnings),
                                    [lower](QStringView beginning) { return lower.startsWith(beginning); });
    if (size > 4 && first.unicode() < 0x250)
        for (const QStringView ending : streetEndings)
            if (lower.back() == ending.back() && size > ending.size() + 1 && lower.endsWith(ending)) {
                word.Compound = true;
                break;
            }
    return word;
}

// Calls with each word and its neighbours until one call returns true.
template <typename Visit>
bool EachWord(QStringView text, Visit visit) {
    Word before;
    Word word = NextWord(text, 0);
    while (word.End > word.Begin) {
        const Word behind = NextWord(text, word.End);
        if (visit(before, word, behind))
            return true;
        before = word;
        word = behind;
    }
    return false;
}

bool IsStreetWord(QStringView text, const Word& before, const Word& word, const Word& behind) {
    const bool hasBefore = before.End > before.Begin;
    const bool hasBehind = behind.End > behind.Begin;
    const auto apart = [text](const Word& left, const Word& right) {
        const QStringView gap = text.sliced(left.End, right.Begin - left.End);
        return gap.contains(u',') || gap.contains(u'\n') || gap.contains(u';') || gap.contains(u'.');
    };
    if (word.Compound && word.Named)
        return true;
    if (word.Compound && IsIdeograph(text[word.Begin]))
        return true;
    // "rue de", "Via Roma", "ul. Prosta"; "via e-mail" and "place your order" are none.
    if ((word.Roles & Before) && hasBehind && !apart(word, behind)) {
        static const QStringView links[] = {u"de",  u"du",  u"des", u"della", u"dei", u"delle", u"del", u"la", u"le",
                                            u"les", u"los", u"las", u"da",    u"do",  u"dos",   u"das", u"d",  u"di",
                                            u"der", u"den", u"dem", u"św.",   u"sv.", u"gen.",  u"al",  u"el"};
        const QStringView next = text.sliced(behind.Begin, behind.End - behind.Begin);
        const bool link = std::any_of(std::begin(links), std::end(links),
                                      [next](QStringView l) { return next.compare(l, Qt::CaseInsensitive) == 0; });
        const QStringView self = text.sliced(word.Begin, word.End - word.Begin);
        static const QStringView weak[] = {u"am", u"an", u"im",   u"zum",  u"zur",   u"auf", u"unter",
                                           u"c.", u"a",  u"zone", u"parc", u"place", u"voie"};
        const bool isWeak = std::any_of(std::begin(weak), std::end(weak),
                                        [self](QStringView w) { return self.compare(w, Qt::CaseInsensitive) == 0; });
        if (isWeak) {
            // "12, place d'Armes"
            if (before.Number && word.Begin - before.End <= 2 && (behind.Named || link) && word.Begin > 0)
                return true;
            // "Am Tabor 1", "An der Alten Mühle 6": a name and then a number.
            Word last = behind;
            Word after = NextWord(text, behind.End);
            for (int more = 0; more < 3 && link && after.Named && !apart(last, after); ++more) {
                last = after;
                after = NextWord(text, last.End);
            }
            return word.Named && last.Named && after.Number && !apart(last, after);
        }
        if (behind.Named || behind.Number || link || text[behind.Begin] == u'\'')
            return true;
    }
    // "Main Street", "5th Ave"; at the end, before a number, a suite or a comma.
    if ((word.Roles & Behind) && hasBefore && !apart(before, word) && (before.Named || before.Number)) {
        if (word.Named || before.Number)
            return true;
        return hasBehind ? behind.Number : before.Named; // "Váci utca 4", "Kungs gata"
    }
    return false;
}

QString Folded(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    for (const QChar c : text)
        folded += c.isSpace() ? QChar(u' ') : c.toLower();
    return folded;
}

// Names as they are compared, to what they stand for.
const QHash<QString, QStringView>& CountryNames() {
    static const auto names = [] {
        QHash<QString, QStringView> all;
        for (const AddressCountry& country : addressCountries)
            for (const QStringView name : country.Names.split(u'|'))
                all.insert(Folded(name), country.Region);
        return all;
    }();
    return names;
}

struct StateNames {
    QHash<QString, int> Folded;   ///< names of more than three letters, in lower case
    QHash<QString, int> Verbatim; ///< abbreviations as they are written
};

const StateNames& StatesOf(QStringView region) {
    static const auto all = [] {
        QHash<QStringView, StateNames> tables;
        for (const AddressStates& row : addressStates) {
            StateNames& names = tables[row.Region];
            for (const QStringView entry : row.States.split(u'|'))
                for (const QStringView name : entry.split(u'='))
                    if (name.size() > 3 && !name.endsWith(u'.'))
                        names.Folded.insert(Folded(name), 1);
                    else if (!name.isEmpty())
                        names.Verbatim.insert(name.toString(), 1);
            if (row.Region == u"IE")
                for (const QStringView entry : row.States.split(u'|')) {
                    names.Folded.insert(Folded(entry), 1);
                    names.Folded.insert(u"county" + Folded(entry.sliced(3)), 1);
                    names.Folded.insert(u"co" + Folded(entry.sliced(3)), 1);
                }
        }
        return tables;
    }();
    static const StateNames none;
    const auto found = all.constFind(region);
    return found != all.constEnd() ? *found : none;
}

bool IsWordBoundary(QStringView text, qsizetype at) {
    return at <= 0 || !text[at - 1].isLetterOrNumber();
}

} // namespace

const AddressCountry* AddressCountryOf(QStringView region) {
    // By its two letters: each line of a page asks.
    const auto slotOf = [](QStringView name) -> std::size_t {
        const auto letter = [name](qsizetype at) { return static_cast<std::size_t>(name[at].unicode() - u'A'); };
        return name.size() == 2 && letter(0) < 26 && letter(1) < 26 ? letter(0) * 26 + letter(1) : std::size_t{26 * 26};
    };
    static const auto rows = [slotOf] {
        std::array<const AddressCountry*, 26 * 26 + 1> all{};
        for (const AddressCountry& country : addressCountries)
            all[slotOf(country.Region)] = &country;
        all.back() = nullptr;
        return all;
    }();
    return rows[slotOf(region)];
}

bool HasDigit(QStringView text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

bool HasStreetWord(QStringView text) {
    return EachWord(text, [text](const Word& before, const Word& word, const Word& behind) {
        return IsStreetWord(text, before, word, behind);
    });
}

qsizetype EndOfStreetIn(QStringView text) {
    qsizetype end = -1;
    bool unit = false;
    EachWord(text, [&](const Word& before, const Word& word, const Word& behind) {
        // "12 Lincoln Ave St. Louis"
        const bool saint = end >= 0 && end == before.End && behind.Named && !behind.Number &&
                           text.sliced(word.Begin, word.End - word.Begin).startsWith(u"St", Qt::CaseInsensitive) &&
                           word.End - word.Begin <= 3;
        if ((word.Roles & Behind) && !saint && IsStreetWord(text, before, word, behind) && !(word.Begin == 0)) {
            end = word.End;
            unit = true;
        } else if (unit && ((word.Roles & Unit) != 0 || word.Number || text[word.Begin] == u'#')) {
            end = word.End;
        } else {
            unit = false;
        }
        return false;
    });
    return end;
}

bool IsPartOfHouse(QStringView text) {
    static const QStringView parts[] = {u"sc", u"bl",   u"et",      u"ap",   u"of",   u"корп",     u"кв",    u"оф",
                                        u"эт", u"стр",  u"lok",     u"piso", u"dpto", u"ste",      u"unit",  u"apt",
                                        u"od", u"ofic", u"oficina", u"буд",  u"офіс", u"building", u"floor", u"suite"};
    qsizetype end = 0;
    while (end < text.size() && text[end].isLetter())
        ++end;
    const bool marked = end < text.size() && (text[end] == u'.' || text[end] == u' ');
    return marked && text.size() - end <= 8 && std::any_of(std::begin(parts), std::end(parts), [&](QStringView part) {
               return text.first(end).compare(part, Qt::CaseInsensitive) == 0;
           });
}

bool AreNames(QStringView text) {
    bool start = true;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (start && text[at].isLower() && at + 3 < text.size() && text[at + 1].isLetter() && text[at + 2].isLetter() &&
            text[at + 3].isLetter())
            return false;
        start = text[at] == u' ';
    }
    return true;
}

qsizetype EndOfNumberIn(QStringView text) {
    if (text.isEmpty() || text.front().isDigit() || !HasStreetWord(text))
        return -1;
    qsizetype end = text.size();
    while (end > 0 && !text[end - 1].isDigit())
        --end;
    const QStringView behind = text.sliced(end);
    // A letter of the number's own, a comma: what follows is another matter.
    const bool town = behind.size() > 3 && behind.front() == u' ' && behind[1].isUpper() && AreNames(behind.sliced(1));
    return end > 0 && town ? end : -1;
}

bool IsStateOf(QStringView region, QStringView text) {
    if (text.isEmpty() || text.size() > 32)
        return false;
    const StateNames& names = StatesOf(region);
    return names.Folded.contains(Folded(text)) || names.Verbatim.contains(text.toString());
}

qsizetype StateAtEnd(QStringView region, QStringView text) {
    qsizetype longest = 0;
    int words = 0;
    for (qsizetype at = text.size(); at > 0 && words < 4;) {
        --at;
        const bool start = IsWordBoundary(text, at) && text[at].isLetter();
        if (!start)
            continue;
        ++words;
        if (IsStateOf(region, text.sliced(at)))
            longest = text.size() - at;
    }
    return longest;
}

qsizetype CountryAtEnd(QStringView text, QString& region) {
    qsizetype longest = 0;
    int words = 0;
    const QStringView tail = text.last(qMin<qsizetype>(text.size(), 40));
    for (qsizetype at = tail.size(); at > 0 && words < 4;) {
        --at;
        if (!IsWordBoundary(tail, at) || !tail[at].isLetter())
            continue;
        ++words;
        const QString found = RegionOfCountryName(tail.sliced(at));
        // The ISO code of a country may be a state's: "San Diego, CA". "UK" and "US" are names.
        if (!found.isEmpty() && (tail.size() - at > 2 || CountryNames().contains(Folded(tail.sliced(at))))) {
            longest = tail.size() - at;
            region = found;
        }
    }
    return longest;
}

QString RegionOfCountryName(QStringView name) {
    if (name.size() < 2 || name.size() > 40)
        return {};
    if (name.size() == 2)
        return (name[0].isUpper() && name[1].isUpper()) || IsIdeograph(name[0])
                   ? CountryNames().value(Folded(name), AddressCountryOf(name) ? name : QStringView()).toString()
                   : QString();
    return CountryNames().value(Folded(name)).toString();
}

QString CountryNameOf(QStringView region) {
    const AddressCountry* const country = AddressCountryOf(region);
    return country ? country->Names
                         .first(country->Names.indexOf(u'|') < 0 ? country->Names.size() : country->Names.indexOf(u'|'))
                         .toString()
                   : QString();
}

} // namespace Brindle
