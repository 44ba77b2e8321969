#include "discovery/PostalAddressWords.h"

#include "discovery/WordTable.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <vector>

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
    u"ул|ул.|улица|ж.к|ж.к.|жк|пр.|пр-т|проспект|просп.|пер.|переулок|пл.|площадь|наб.|набережная|шоссе|ш.|бул.|"
    u"бульвар|бул|вул.|"
    u"вулиця|площа|пров.|провулок|"
    u"οδός|οδ.|λεωφόρος|λεωφ.|λ.|πλατεία|πλ.|"
    u"jalan|jl|jl.|jln|jln.|lorong|gang|persiaran|lebuh|"
    u"đường|phố|đ.|ngõ|ถนน|ถ.|ซอย|ซ.|شارع|طريق|רחוב|רח'|שדרות|שד'|triq|sráid|"
    u"phường|quận|huyện|ruta|km|"
    u"postfach|postbus|postboks|apartado|apdo|apdo.|casilla|p.m.b.|pmb|bp|b.p.|box|"
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

const WordTable<int>& Roles() {
    static const auto roles = [] {
        WordTable<int> all;
        const auto add = [&all](QStringView words, Role role) {
            for (const QStringView word : words.split(u'|', Qt::SkipEmptyParts))
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

// What a character of ASCII does in a word.
enum class InWord : quint8 { Never, Always, Joins, Begins };

constexpr auto asciiInWord = [] {
    std::array<InWord, 128> table{};
    for (size_t at = 0; at < table.size(); ++at)
        if (Ascii::IsLetterOrDigit(static_cast<char16_t>(at)))
            table[at] = InWord::Always;
    for (const char16_t u : {u'-', u'\'', u'/', u'.'})
        table[u] = InWord::Joins;
    table[u'#'] = InWord::Begins;
    return table;
}();

QChar Lower(QChar c) {
    const char16_t u = c.unicode();
    return u < 0x80 ? QChar(u >= u'A' && u <= u'Z' ? static_cast<char16_t>(u + 0x20) : u) : c.toLower();
}

bool IsInWord(QChar c) {
    return c.isLetterOrNumber() || (c.unicode() >= 0x300 && c.isMark());
}

// The endings of street names by the last letter: a word that ends in another one has none.
std::span<const QStringView> StreetEndingsOf(QChar last) {
    static const auto all = [] {
        std::array<std::vector<QStringView>, 256> endings;
        for (const QStringView ending : streetEndings)
            endings[ending.back().unicode() % endings.size()].push_back(ending);
        return endings;
    }();
    return all[last.unicode() % all.size()];
}

bool EndsAsStreet(QStringView lower) {
    const auto endings = StreetEndingsOf(lower.back());
    return std::any_of(endings.begin(), endings.end(), [lower](QStringView ending) {
        return lower.size() > ending.size() + 1 &&
               std::equal(ending.begin(), ending.end(), lower.end() - ending.size(), lower.end());
    });
}

bool BeginsWord(QChar c) {
    const char16_t u = c.unicode();
    if (u < asciiInWord.size())
        return asciiInWord[u] == InWord::Always || asciiInWord[u] == InWord::Begins;
    return c.isLetterOrNumber();
}

// Whether a character goes on with a word, or begins it.
bool GoesOn(QChar c, bool begins, bool ideographs) {
    const char16_t u = c.unicode();
    if (u < asciiInWord.size())
        return asciiInWord[u] == InWord::Always || asciiInWord[u] == (begins ? InWord::Begins : InWord::Joins);
    return (IsInWord(c) || (IsJoin(c) && !begins)) && (ideographs || !IsIdeograph(c));
}

// The next word from `at` on; its end is `at` when there is none.
Word NextWord(QStringView text, qsizetype at) {
    Word word;
    while (at < text.size() && !BeginsWord(text[at]))
        ++at;
    word.Begin = at;
    const bool ideographs = at < text.size() && IsIdeograph(text[at]);
    while (at < text.size() && GoesOn(text[at], at == word.Begin, ideographs))
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
    const qsizetype size = word.End - word.Begin;
    const QChar last = Lower(text[word.End - 1]);
    const bool joined = last == u'-' || last == u'/';
    const bool mayEnd = size > 4 && first.unicode() < 0x250 && !StreetEndingsOf(last).empty();
    const bool thai = first.unicode() >= 0x0E00 && first.unicode() < 0x0E80;
    const QChar lowerFirst = Lower(first);
    if (!ideographs && !thai && !mayEnd && !Roles().MayHave(lowerFirst, size) &&
        !(joined && Roles().MayHave(lowerFirst, size - 1)))
        return word;
    std::array<QChar, longestWord> folded;
    std::transform(text.begin() + word.Begin, text.begin() + word.End, folded.begin(), Lower);
    const QStringView lower(folded.data(), size);
    word.Roles = Roles().ValueOf(lower);
    if (word.Roles == None && joined)
        word.Roles = Roles().ValueOf(lower.chopped(1));
    if (ideographs) {
        word.Compound = std::any_of(std::begin(bareEndings), std::end(bareEndings),
                                    [lower](QStringView ending) { return lower.contains(ending); });
        return word;
    }
    if (thai)
        word.Compound = std::any_of(std::begin(thaiBeginnings), std::end(thaiBeginnings),
                                    [lower](QStringView beginning) { return lower.startsWith(beginning); });
    if (mayEnd)
        word.Compound = EndsAsStreet(lower);
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
    if (!word.Compound && (word.Roles & (Before | Behind)) == 0)
        return false;
    const bool hasBefore = before.End > before.Begin;
    const bool hasBehind = behind.End > behind.Begin;
    const auto apart = [text](const Word& left, const Word& right) {
        const QStringView gap = text.sliced(left.End, right.Begin - left.End);
        return std::any_of(gap.begin(), gap.end(), [](QChar c) { return IsAmong(c, u",\n;."); });
    };
    if (word.Compound && word.Named)
        return true;
    if (word.Compound && IsIdeograph(text[word.Begin]))
        return true;
    // "rue de", "Via Roma", "ul. Prosta"; "via e-mail" and "place your order" are none.
    if ((word.Roles & Before) && hasBehind && !apart(word, behind)) {
        static const QStringView links[] = {u"de",  u"du",  u"des",  u"della", u"dei",    u"delle", u"del", u"la",
                                            u"le",  u"les", u"los",  u"las",   u"da",     u"do",    u"dos", u"das",
                                            u"d",   u"di",  u"bana", u"kneza", u"kralja", u"braće", u"der", u"den",
                                            u"dem", u"św.", u"sv.",  u"gen.",  u"al",     u"el"};
        const QStringView next = text.sliced(behind.Begin, behind.End - behind.Begin);
        const bool link = std::any_of(std::begin(links), std::end(links),
                                      [next](QStringView l) { return next.compare(l, Qt::CaseInsensitive) == 0; });
        const QStringView self = text.sliced(word.Begin, word.End - word.Begin);
        static const QStringView weak[] = {u"am", u"an", u"im",   u"zum",  u"zur",   u"auf", u"unter",
                                           u"c.", u"a",  u"zone", u"parc", u"place", u"voie"};
        // "P.O. Box 123" and nothing else that is a box; "BP 120", "Km 29".
        if (self.compare(u"box", Qt::CaseInsensitive) == 0) {
            const QStringView office = text.sliced(before.Begin, before.End - before.Begin);
            return behind.Number && hasBefore &&
                   (office.startsWith(u"P", Qt::CaseInsensitive) || office.startsWith(u"O.", Qt::CaseInsensitive)) &&
                   office.size() <= 7;
        }
        for (const QStringView numbered : {u"bp", u"b.p.", u"km", u"pmb", u"p.m.b.", u"casilla", u"ruta"})
            if (self.compare(numbered, Qt::CaseInsensitive) == 0)
                return behind.Number && word.Named;
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
    QString folded(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), folded.begin(),
                   [](QChar c) { return c.isSpace() ? QChar(u' ') : Lower(c); });
    return folded;
}

// The same of a text that is only looked up, and of at most 40 characters.
class FoldedName {
public:
    explicit FoldedName(QStringView text) : size_(std::min<qsizetype>(text.size(), 40)) {
        std::transform(text.begin(), text.begin() + size_, folded_.begin(),
                       [](QChar c) { return c.isSpace() ? QChar(u' ') : Lower(c); });
    }
    QStringView View() const { return {folded_.data(), size_}; }

private:
    std::array<QChar, 40> folded_;
    qsizetype size_;
};

// Names that are made, with what they stand for.
template <typename Value>
class NameTable {
public:
    void Add(QString name, Value value) {
        names_.push_back(std::move(name)); // what a view of a text shows stays where it is when the text is moved
        table_[names_.back()] = value;
    }
    const Value* Find(QStringView name) const { return table_.Find(name); }
    // The value of a name that is still to be folded.
    const Value* FindFolded(QStringView name) const {
        if (name.isEmpty() || name.size() > 40 || !table_.MayHave(Lower(name.front()), name.size()))
            return nullptr;
        return table_.Find(FoldedName(name).View());
    }

private:
    std::vector<QString> names_;
    WordTable<Value> table_;
};

// Names as they are compared, to what they stand for.
const NameTable<QStringView>& CountryNames() {
    static const auto names = [] {
        NameTable<QStringView> all;
        for (const AddressCountry& country : addressCountries)
            for (const QStringView name : country.Names.split(u'|', Qt::SkipEmptyParts))
                all.Add(Folded(name), country.Region);
        return all;
    }();
    return names;
}

struct StateNames {
    NameTable<bool> Folded;   ///< names of more than three letters, in lower case
    NameTable<bool> Verbatim; ///< abbreviations as they are written
};

constexpr std::size_t regionSlots = 26 * 26 + 1;

// A region by its two letters, as each line of a page asks for it; the last slot is for all that are none.
std::size_t SlotOf(QStringView region) {
    const auto letter = [region](qsizetype at) { return static_cast<std::size_t>(region[at].unicode() - u'A'); };
    return region.size() == 2 && letter(0) < 26 && letter(1) < 26 ? letter(0) * 26 + letter(1) : regionSlots - 1;
}

// Null where a region's addresses name none.
const StateNames* StatesOf(QStringView region) {
    static const auto all = [] {
        std::vector<std::unique_ptr<StateNames>> tables(regionSlots);
        for (const AddressStates& row : addressStates) {
            tables[SlotOf(row.Region)] = std::make_unique<StateNames>();
            StateNames& names = *tables[SlotOf(row.Region)];
            for (const QStringView entry : row.States.split(u'|'))
                for (const QStringView name : entry.split(u'='))
                    if (name.size() > 3 && !name.endsWith(u'.'))
                        names.Folded.Add(Folded(name), true);
                    else if (!name.isEmpty())
                        names.Verbatim.Add(name.toString(), true);
            if (row.Region == u"IE")
                for (const QStringView entry : row.States.split(u'|')) {
                    names.Folded.Add(Folded(entry), true);
                    names.Folded.Add(u"county" + Folded(entry.sliced(3)), true);
                    names.Folded.Add(u"co" + Folded(entry.sliced(3)), true);
                }
        }
        return tables;
    }();
    return all[SlotOf(region)].get();
}

bool IsWordBoundary(QStringView text, qsizetype at) {
    return at <= 0 || !text[at - 1].isLetterOrNumber();
}

} // namespace

const AddressCountry* AddressCountryOf(QStringView region) {
    static const auto rows = [] {
        std::array<const AddressCountry*, regionSlots> all{};
        for (const AddressCountry& country : addressCountries)
            all[SlotOf(country.Region)] = &country;
        all.back() = nullptr;
        return all;
    }();
    return rows[SlotOf(region)];
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

// "First Floor", "3. OG", "2e étage", "Kat: 2"
static bool IsFloor(QStringView text) {
    constexpr QStringView floors =
        u" floor level og eg ug stock stg étage etage planta piso andar patro poschodie kat krs "
        u"emelet piętro vån sal etg όροφος этаж поверх етаж lantai tingkat tầng ";
    constexpr QStringView ordinals = u" ground first second third fourth fifth lower upper top ";
    bool floor = false;
    bool ordinal = HasDigit(text);
    for (const QStringView word : text.split(u' ', Qt::SkipEmptyParts)) {
        const QString one = u' ' + Stripped(word, u".,:()").toString().toLower() + u' ';
        floor = floor || floors.contains(one);
        ordinal = ordinal || ordinals.contains(one);
    }
    return floor && ordinal;
}

bool IsPartOfHouse(QStringView text) {
    if (text.size() <= 24 && text.contains(u' ') && IsFloor(text))
        return true;
    static const QStringView parts[] = {u"sc",  u"bl",   u"et",      u"ap",   u"of",   u"корп",     u"кв",    u"оф",
                                        u"эт",  u"стр",  u"lok",     u"piso", u"dpto", u"ste",      u"unit",  u"apt",
                                        u"od",  u"ofic", u"oficina", u"буд",  u"офіс", u"building", u"floor", u"suite",
                                        u"лит", u"бл",   u"вх",      u"ет",   u"пом"};
    // "n.º 80", "Nº 12"
    const bool numero = text.size() > 2 && (text.front() == u'n' || text.front() == u'N') &&
                        QStringView(u".º°o").contains(text[1]) && HasDigit(text) && text.size() <= 12;
    if (numero && std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); }) <= 3)
        return true;
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
    // Scripts without capitals have streets without a word for them: "הרצל 107 חיפה".
    const bool caseless =
        !text.isEmpty() && text.front().isLetter() && !text.front().isUpper() && !text.front().isLower();
    if (text.isEmpty() || text.front().isDigit() || !(caseless || HasStreetWord(text)))
        return -1;
    qsizetype end = text.size();
    while (end > 0 && !text[end - 1].isDigit())
        --end;
    const QStringView behind = text.sliced(end);
    // A letter of the number's own, a comma: what follows is another matter.
    const bool town = behind.size() > 3 && behind.front() == u' ' && behind[1].isLetter() && !behind[1].isLower() &&
                      AreNames(behind.sliced(1));
    return end > 0 && town ? end : -1;
}

bool IsStateOf(QStringView region, QStringView text) {
    if (text.isEmpty() || text.size() > 32)
        return false;
    const StateNames* const names = StatesOf(region);
    return names && (names->Folded.FindFolded(text) || names->Verbatim.Find(text));
}

qsizetype StateAtEnd(QStringView region, QStringView text) {
    qsizetype longest = 0;
    int words = 0;
    if (!StatesOf(region))
        return 0;
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
        if (!found.isEmpty() && (tail.size() - at > 2 || CountryNames().FindFolded(tail.sliced(at)))) {
            longest = tail.size() - at;
            region = found;
        }
    }
    return longest;
}

QString RegionOfCountryName(QStringView name) {
    if (name.size() < 2 || name.size() > 40)
        return {};
    const QStringView* const region = CountryNames().FindFolded(name);
    if (name.size() > 2)
        return region ? region->toString() : QString();
    if (!(name[0].isUpper() && name[1].isUpper()) && !IsIdeograph(name[0]))
        return {};
    return region ? region->toString() : AddressCountryOf(name) ? name.toString() : QString();
}

QString CountryNameOf(QStringView region) {
    const AddressCountry* const country = AddressCountryOf(region);
    return country ? country->Names
                         .first(country->Names.indexOf(u'|') < 0 ? country->Names.size() : country->Names.indexOf(u'|'))
                         .toString()
                   : QString();
}

} // namespace Brindle
