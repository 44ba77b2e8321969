#include "discovery/Annotations.h"

#include "discovery/NextPage.h"
#include "discovery/RecordsAddress.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Phone.h"
#include "toolkit/Text.h"

#include <QHash>
#include <QSet>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <deque>
#include <limits>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto socialHosts = std::to_array<QStringView>({u"facebook.com",
                                                         u"fb.com",
                                                         u"fb.me",
                                                         u"twitter.com",
                                                         u"x.com",
                                                         u"t.co",
                                                         u"instagram.com",
                                                         u"linkedin.com",
                                                         u"youtube.com",
                                                         u"youtu.be",
                                                         u"pinterest.com",
                                                         u"tiktok.com",
                                                         u"plus.google.com",
                                                         u"wa.me",
                                                         u"whatsapp.com",
                                                         u"t.me",
                                                         u"telegram.me",
                                                         u"vk.com",
                                                         u"ok.ru",
                                                         u"xing.com",
                                                         u"line.me",
                                                         u"weibo.com",
                                                         u"tumblr.com",
                                                         u"reddit.com",
                                                         u"vimeo.com",
                                                         u"flickr.com",
                                                         u"snapchat.com",
                                                         u"play.google.com",
                                                         u"itunes.apple.com",
                                                         u"apps.apple.com",
                                                         u"addthis.com",
                                                         u"sharethis.com",
                                                         u"digg.com",
                                                         u"stumbleupon.com",
                                                         u"del.icio.us",
                                                         u"delicious.com",
                                                         u"b.hatena.ne.jp",
                                                         u"getpocket.com",
                                                         u"foursquare.com"});

// Whether the host or one that it belongs to is among them.
bool IsHost(QStringView host, const QSet<QStringView>& hosts) {
    while (!hosts.contains(host)) {
        const qsizetype dot = host.indexOf(u'.');
        if (dot < 0)
            return false;
        host = host.sliced(dot + 1);
    }
    return true;
}

bool IsSocialHost(QStringView host) {
    static const QSet<QStringView> hosts(socialHosts.begin(), socialHosts.end());
    return IsHost(host, hosts);
}

void Count(quint8& number) {
    if (number < std::numeric_limits<quint8>::max())
        ++number;
}

quint8 Sum(quint8 one, quint8 other) {
    return static_cast<quint8>(std::min<int>(one + other, std::numeric_limits<quint8>::max()));
}

// Whether an attribute says what its element is.
bool CallsItsElement(QStringView name) {
    switch (name.size()) {
    case 2:
        return name == u"id";
    case 4:
        return name == u"slot";
    case 5:
        return name == u"class";
    case 7:
        return name == u"data-qa" || name == u"data-cy";
    case 8:
        return name == u"itemprop" || name == u"property" || name == u"itemtype";
    case 9:
        return name == u"data-test";
    case 10:
        return name == u"data-field" || name == u"data-label";
    case 11:
        return name == u"data-testid";
    default:
        return false;
    }
}

// `HintsOfName`, remembered: the same names stand on many elements, and on all pages of a directory.
HintSet HintsOfNames(QStringView names) {
    struct Memory {
        std::deque<QString> Texts; // what the keys show
        QHash<QStringView, HintSet> Hints;
    };
    static thread_local Memory memory;
    constexpr qsizetype most = 20000;
    const auto known = memory.Hints.constFind(names);
    if (known != memory.Hints.cend())
        return *known;
    if (memory.Hints.size() > most)
        memory = {};
    return *memory.Hints.insert(memory.Texts.emplace_back(names.toString()), HintsOfName(names));
}

// Characters of a line without which it needs no closer look.
struct LineSigns {
    qsizetype Digits = 0;
    bool At = false;      ///< "@"
    bool Bracket = false; ///< that can stand around an "at"
};

LineSigns SignsOf(QStringView line) {
    LineSigns signs;
    for (const QChar c : line) {
        const char16_t u = c.unicode();
        signs.Digits += u < 0x80 ? u >= u'0' && u <= u'9' : c.isDigit();
        signs.At |= u == u'@';
        signs.Bracket |= u == u'[' || u == u'(';
    }
    return signs;
}

} // namespace

bool IsMapAddress(const QString& host, const QString& address) {
    static const QSet<QStringView> mapHosts({u"openstreetmap.org", u"mapy.cz", u"goo.gl", u"mapquest.com", u"waze.com",
                                             u"here.com", u"2gis.ru", u"map.qq.com", u"map.baidu.com", u"map.naver.com",
                                             u"map.kakao.com", u"amap.com", u"maps.app.goo.gl"});
    if (host.startsWith(u"maps.") || host.startsWith(u"map.") || IsHost(host, mapHosts))
        return true;
    return address.contains(u"/map", Qt::CaseInsensitive) &&
           (host.contains(u"google.") || host.contains(u"bing.") || host.contains(u"yandex.") ||
            host.contains(u"yahoo.") || host.contains(u"apple."));
}

NodeFacts& NodeFacts::operator+=(const NodeFacts& other) {
    // The counts lie side by side: all of them are added at once.
    constexpr size_t counts = offsetof(NodeFacts, Characters);
    static_assert(counts == 16 && std::is_trivially_copyable_v<NodeFacts>);
    std::array<quint8, counts> mine;
    std::array<quint8, counts> others;
    std::memcpy(mine.data(), this, counts);
    std::memcpy(others.data(), &other, counts);
    for (size_t i = 0; i < counts; ++i)
        mine[i] = Sum(mine[i], others[i]);
    std::memcpy(static_cast<void*>(this), mine.data(), counts);
    Characters += other.Characters;
    return *this;
}

PageAnnotations::PageAnnotations(const PageTree& page, const PageLines& lines, const QString& url,
                                 const AddressHints& country)
    : Page(page),
      Lines(lines),
      Url(url),
      Base(BaseAddressOf(page, url)),
      Site(SiteOf(url)),
      Country(country),
      Region(GuessCountry(country).Region),
      Hints(static_cast<size_t>(page.Count()), 0),
      Facts(static_cast<size_t>(page.Count())),
      IsAddressLine(lines.Lines.size(), false),
      IsCodeLine(lines.Lines.size(), false),
      IsStreetLine(lines.Lines.size(), false),
      IsDateLine(lines.Lines.size(), false),
      IsPriceLine(lines.Lines.size(), false),
      baseSite_(SiteOf(Base)),
      ownPage_(WithoutFragment(Url)) {
    // Every address of the page asks for it.
    if (!Region.isEmpty())
        Country.Country = Region;
    ReadElements();
    ReadLines();
    std::stable_sort(Phones.begin(), Phones.end(),
                     [](const PagePhone& one, const PagePhone& other) { return one.Node < other.Node; });
    std::stable_sort(Mails.begin(), Mails.end(),
                     [](const PageMail& one, const PageMail& other) { return one.Node < other.Node; });
    CountUpward();
}

const PageLink* PageAnnotations::LinkAt(NodeIndex node) const {
    const auto found = std::lower_bound(Links.begin(), Links.end(), node,
                                        [](const PageLink& link, NodeIndex wanted) { return link.Node < wanted; });
    return found != Links.end() && found->Node == node ? &*found : nullptr;
}

void PageAnnotations::ReadElements() {
    const NodeIndex body = Page.Body();
    if (body == noNode)
        return;
    const SilentElements silent(Page);
    for (NodeIndex node = body; node < Page.End(body);) {
        if (Page.IsElement(node)) {
            if (silent.Have(node) && !Page.Is(node, u"noscript")) {
                node = Page.End(node);
                continue;
            }
            ReadElement(node);
        }
        ++node;
    }
}

void PageAnnotations::ReadElement(NodeIndex node) {
    HintSet hints = 0;
    QStringView href;
    for (const PageAttribute& attribute : Page.Attributes(node)) {
        const QStringView name = attribute.Name;
        if (name == u"href") {
            href = attribute.Value;
        } else if (CallsItsElement(name)) {
            if (!attribute.Value.isEmpty() && attribute.Value.size() <= 300)
                hints |=
                    HintsOfNames(name == u"itemtype" ? attribute.Value.sliced(attribute.Value.lastIndexOf(u'/') + 1)
                                                     : attribute.Value);
        } else if (name == u"aria-label") {
            if (TellsRating(attribute.Value))
                hints = hints | Hint::Rating;
        } else if (name == u"data-cfemail") {
            if (const QString mail = DecodedMail(attribute.Value); !mail.isEmpty())
                Mails.push_back({node, mail});
        } else if (name.startsWith(u"data-") && attribute.Value.size() >= 6 && attribute.Value.size() <= 80) {
            ReadData(node, name.sliced(5), attribute.Value);
        }
    }
    const bool isAside = Page.Is(node, u"nav") || Page.Is(node, u"footer") || Page.Is(node, u"aside");
    if (isAside)
        hints = hints | Hint::Aside;
    Hints[static_cast<size_t>(node)] = hints;

    NodeFacts& facts = Facts[static_cast<size_t>(node)];
    const QStringView name = Page.Name(node);
    if (IsHeading(Page, node))
        Count(facts.Headings);
    else if (name == u"b" || name == u"strong" || name == u"dt")
        Count(facts.Strong);
    if (Has(hints, Hint::Name))
        Count(facts.Names);
    if (name == u"address" || Has(hints, Hint::Address) || Has(hints, Hint::Street))
        Count(facts.Addresses);
    if (Has(hints, Hint::City))
        Count(facts.Cities);
    if (Has(hints, Hint::Category))
        Count(facts.Categories);
    if (Has(hints, Hint::Rating))
        Count(facts.Ratings);
    if (name == u"time")
        Count(facts.Dates);
    if (name == u"a" && !href.isNull())
        ReadLink(node, href);
}

// "4.5 star rating", "4,5 von 5": stars that are drawn are told to those who do not see them.
bool PageAnnotations::TellsRating(QStringView label) {
    if (label.size() < 3 || label.size() > 60)
        return false;
    const auto first = std::find_if(label.begin(), label.end(), [](QChar c) { return c.isDigit(); });
    if (first == label.end() || *first > u'5')
        return false;
    const QStringView rest = label.sliced(first - label.begin() + 1);
    const bool fraction = rest.size() > 1 && (rest[0] == u'.' || rest[0] == u',') && rest[1].isDigit();
    const bool whole = rest.isEmpty() || !rest[0].isDigit();
    if (!fraction && !whole)
        return false;
    return label.contains(u"star", Qt::CaseInsensitive) || label.contains(u"stern", Qt::CaseInsensitive) ||
           (rest.size() > 1 && rest.size() <= 20 && rest.sliced(1).contains(u'5'));
}

// Numbers and addresses of mail that a page shows on a click only.
void PageAnnotations::ReadData(NodeIndex node, QStringView name, QStringView value) {
    const bool mail = value.contains(u'@');
    if (!mail && !value.back().isDigit())
        return;
    const HintSet hints = HintsOfName(name);
    if (mail && Has(hints, Hint::Mail)) {
        for (const QString& one : MailsIn(value)) {
            Mails.push_back({node, one});
            Count(Facts[static_cast<size_t>(node)].Mails);
        }
    } else if (Has(hints, Hint::Phone) && !Has(hints, Hint::Fax)) {
        const QString number = TrimmedView(value).toString();
        if (!DigitsOfPhone(number).isEmpty())
            dataPhones_.emplace_back(node, number);
    }
}

void PageAnnotations::ReadLink(NodeIndex node, QStringView href) {
    const QString trimmed = TrimmedView(href).toString();
    PageLink link{node, LinkKind::None, {}, {}};
    NodeFacts& facts = Facts[static_cast<size_t>(node)];
    const QString scheme = SchemeOf(trimmed);
    if (scheme == u"tel" || scheme == u"callto" || scheme == u"sms") {
        link.Kind = LinkKind::Phone;
        link.Address = QUrl::fromPercentEncoding(trimmed.sliced(scheme.size() + 1).toUtf8());
        while (link.Address.startsWith(u'/'))
            link.Address.remove(0, 1);
    } else if (scheme == u"mailto") {
        QString mail = trimmed.sliced(7);
        if (const qsizetype query = mail.indexOf(u'?'); query >= 0)
            mail.truncate(query);
        const QStringList mails = MailsIn(QUrl::fromPercentEncoding(mail.toUtf8()));
        if (!mails.isEmpty()) {
            link.Kind = LinkKind::Mail;
            link.Address = mails.join(u';');
            for (const QString& one : mails)
                Mails.push_back({node, one});
            Count(facts.Mails);
        }
    } else if (scheme == u"geo") {
        link.Kind = LinkKind::Map;
        link.Address = trimmed;
    } else if (!trimmed.isEmpty() && !trimmed.startsWith(u'#') &&
               (scheme.isEmpty() || scheme == u"http" || scheme == u"https")) {
        link.Address = WithoutDotSegments(ResolveAddress(Base, trimmed));
        // A path of this server; browsers mend what could make a host of its first part.
        const bool ofBase = trimmed.startsWith(u'/') &&
                            (trimmed.size() == 1 || (trimmed[1] > u' ' && trimmed[1] != u'/' && trimmed[1] != u'\\'));
        link.Host = ofBase ? baseSite_ : SiteOf(link.Address);
        const auto isPart = [](const QString& host, const QString& of) {
            return of.size() > host.size() && of[of.size() - host.size() - 1] == u'.' && of.endsWith(host);
        };
        const bool own = link.Host == Site || isPart(Site, link.Host) || isPart(link.Host, Site);
        if (link.Host.isEmpty())
            link.Kind = LinkKind::None;
        else if (!own && IsMapAddress(link.Host, link.Address))
            link.Kind = LinkKind::Map;
        else if (!own && IsSocialHost(link.Host))
            link.Kind = LinkKind::Social;
        else if (!own)
            link.Kind = LinkKind::Outside;
        else if (WithoutFragment(link.Address) != ownPage_)
            link.Kind = LinkKind::Own;
        if (link.Kind == LinkKind::Map)
            Count(facts.Maps);
        else if (link.Kind == LinkKind::Outside)
            Count(facts.Websites);
        else if (link.Kind == LinkKind::Own)
            Count(facts.OwnLinks);
    }
    Links.push_back(std::move(link));
}

NodeIndex PageAnnotations::NodeAt(int line, qsizetype position) const {
    const TextLine& whole = Lines.Lines[static_cast<size_t>(line)];
    auto piece = static_cast<size_t>(whole.FirstPiece);
    for (int i = 1; i < whole.PieceCount && Lines.Pieces[piece + 1].Begin <= position; ++i)
        ++piece;
    return Lines.Pieces[piece].Node;
}

void PageAnnotations::ReadLines() {
    for (size_t i = 0; i < Lines.Lines.size(); ++i) {
        const TextLine& line = Lines.Lines[i];
        const QStringView text = Lines.TextOf(line);
        for (int piece = line.FirstPiece; piece < line.FirstPiece + line.PieceCount; ++piece) {
            const TextPiece& part = Lines.Pieces[static_cast<size_t>(piece)];
            Facts[static_cast<size_t>(part.Node)].Characters += static_cast<quint32>(part.Length);
        }
        const int number = static_cast<int>(i);
        const LineSigns signs = SignsOf(text);
        if (signs.At || (signs.Bracket && (text.contains(u"[at]") || text.contains(u"(at)"))))
            ReadMails(number);
        if (signs.Digits == 0 || line.Length > 4000)
            continue;
        NodeFacts& facts = Facts[static_cast<size_t>(NodeAt(number, line.Begin))];
        if (signs.Digits >= 5)
            ReadPhones(number);
        const AddressSigns address = AddressSignsIn(text, Region);
        if (address.PostalCode)
            Count(facts.PostalCodes);
        if (address.Street)
            Count(facts.Streets);
        IsCodeLine[i] = address.PostalCode;
        IsStreetLine[i] = address.Street;
        IsAddressLine[i] = address.PostalCode || address.Street;
        if (HasDate(text)) {
            IsDateLine[i] = true;
            Count(facts.Dates);
        }
        if (HasPrice(text)) {
            IsPriceLine[i] = true;
            Count(facts.Prices);
        }
    }
    // Numbers that stand in a link only: "Call now".
    const std::vector<PagePhone> shown = Phones;
    const auto add = [&](NodeIndex node, const QString& value) {
        const auto within =
            std::lower_bound(shown.begin(), shown.end(), node,
                             [](const PagePhone& phone, NodeIndex other) { return phone.Node < other; });
        if (within != shown.end() && within->Node < Page.End(node))
            return;
        const std::optional<PhoneNumber> number = ReadPhone(value, Region);
        const QString key = number ? number->E164 : DigitsOfPhone(value);
        const QString text = TextWithin(node);
        if (!key.isEmpty())
            AddPhone({node, -1, 0, 0, DigitsOfPhone(text).isEmpty() ? value : text, key});
    };
    for (const PageLink& link : Links)
        if (link.Kind == LinkKind::Phone)
            add(link.Node, link.Address);
    for (const auto& [node, number] : dataPhones_)
        add(node, number);
}

void PageAnnotations::AddPhone(const PagePhone& phone) {
    Count(Facts[static_cast<size_t>(phone.Node)].Phones);
    Phones.push_back(phone);
}

void PageAnnotations::ReadPhones(int line) {
    const TextLine& whole = Lines.Lines[static_cast<size_t>(line)];
    const QStringView text = Lines.TextOf(whole);
    // Numbers in elements of their own first: what stands beside them may only look like a part of them.
    std::vector<FoundPhone> places;
    if (whole.PieceCount > 1)
        for (int i = whole.FirstPiece; i < whole.FirstPiece + whole.PieceCount; ++i) {
            const TextPiece& piece = Lines.Pieces[static_cast<size_t>(i)];
            if (piece.Length < 6)
                continue;
            for (FoundPhone& place : FindPhones(Lines.TextOf(piece), Region)) {
                place.Begin += piece.Begin - whole.Begin;
                place.End += piece.Begin - whole.Begin;
                places.push_back(std::move(place));
            }
        }
    const auto own = static_cast<std::ptrdiff_t>(places.size());
    // What is left has too few digits for another one.
    const auto digitsIn = [](QStringView part) {
        return std::count_if(part.begin(), part.end(), [](QChar c) { return c.isDigit(); });
    };
    qsizetype left = digitsIn(text);
    for (const FoundPhone& place : places)
        left -= digitsIn(text.sliced(place.Begin, place.End - place.Begin));
    for (FoundPhone& place : own == 0 || left >= 3 ? FindPhones(text, Region) : std::vector<FoundPhone>())
        if (std::none_of(places.begin(), places.begin() + own, [&place](const FoundPhone& known) {
                return known.Begin < place.End && place.Begin < known.End;
            }))
            places.push_back(std::move(place));
    std::stable_sort(places.begin(), places.end(),
                     [](const FoundPhone& one, const FoundPhone& other) { return one.Begin < other.Begin; });
    for (const FoundPhone& place : places) {
        // Few digits are a number only where the page says so.
        const QStringView shown = text.sliced(place.Begin, place.End - place.Begin);
        const auto count = std::count_if(shown.begin(), shown.end(), [](QChar c) { return c.isDigit(); });
        if (count < 7 && !EndsWithPhoneLabel(text.first(place.Begin)))
            continue;
        // "CEP 01310-795"
        const std::vector<TextSpan> codes = PostalCodesIn(shown, Region);
        if (codes.size() == 1 && codes.front() == TextSpan{0, shown.size()} && shown.contains(u'-'))
            continue;
        if (BeginsWithRating(shown) || EndsInPostalCode(text, place) || HidesDigits(text.sliced(place.End)))
            continue;
        AddPhone({NodeAt(line, whole.Begin + place.Begin), line, whole.Begin + place.Begin, whole.Begin + place.End,
                  shown.toString(), place.Number.E164});
    }
    if (places.empty() && SaysPhone(line))
        ReadLabelledPhone(line);
}

// "(0232) 818 XX XX", "0151 2345…": the rest of the number is shown on a click only.
bool PageAnnotations::HidesDigits(QStringView behind) {
    while (!behind.isEmpty() && (behind.front().isSpace() || behind.front() == u'-'))
        behind = behind.sliced(1);
    if (behind.size() == 1 || (behind.size() > 1 && behind[0] != u'\u2026' && behind[0] != behind[1]))
        return behind == u"\u2026";
    return !behind.isEmpty() && QStringView(u"Xx*\u2022\u25CF\u2026._").contains(behind.front());
}

// "4.5 (218) 135 Patrick Street": how well a place is liked, and by how many.
bool PageAnnotations::BeginsWithRating(QStringView number) {
    return number.size() > 5 && number[0].isDigit() && (number[1] == u'.' || number[1] == u',') &&
           number[2].isDigit() && (number[3] == u'(' || (number[3].isSpace() && number[4] == u'('));
}

// "Rua Augusta, 23 1100-048 Lisboa": digits that end in a code with a name behind it are none of a number that nothing
// announces.
bool PageAnnotations::EndsInPostalCode(QStringView line, const FoundPhone& place) const {
    const QChar first = line[place.Begin];
    if (first == u'0' || first == u'+' || first == u'(' || place.End + 1 >= line.size() || line[place.End] != u' ' ||
        !line[place.End + 1].isUpper() || EndsWithPhoneLabel(line.first(place.Begin)))
        return false;
    for (const TextSpan& code : PostalCodesIn(line.sliced(place.Begin), Region))
        if (code.Begin > 0 && place.Begin + code.End == place.End)
            return true;
    return false;
}

// Whether the page calls a line a phone number: by a label in it or before it, or by the names of its elements.
bool PageAnnotations::SaysPhone(int line) const {
    const TextLine& whole = Lines.Lines[static_cast<size_t>(line)];
    constexpr HintSet phones = Hint::Phone | Hint::Fax;
    if ((LabelAtBegin(Lines.TextOf(whole)).Hints & phones) != 0)
        return true;
    if (line > 0 && (HintsOfLabel(Lines.TextOf(Lines.Lines[static_cast<size_t>(line) - 1])) & phones) != 0)
        return true;
    NodeIndex node = Page.Parent(Lines.Pieces[static_cast<size_t>(whole.FirstPiece + whole.PieceCount) - 1].Node);
    for (int level = 0; level < 3 && node != noNode; ++level, node = Page.Parent(node))
        if ((HintsOf(node) & phones) != 0)
            return true;
    return false;
}

// A number that stands there as one counts, also where its country could not have it: only its digits tell it then.
void PageAnnotations::ReadLabelledPhone(int line) {
    const TextLine& whole = Lines.Lines[static_cast<size_t>(line)];
    const qsizetype label = LabelAtBegin(Lines.TextOf(whole)).Length;
    const QStringView value = Lines.TextOf(whole).sliced(label);
    // "CEP" is a mobile phone here and a postal code there.
    const std::vector<TextSpan> codes = PostalCodesIn(value, Region);
    if (codes.size() == 1 && codes.front() == TextSpan{0, value.size()})
        return;
    if (const QString key = DigitsOfPhone(value); !key.isEmpty())
        AddPhone({NodeAt(line, whole.Begin + label), line, whole.Begin + label, whole.Begin + whole.Length,
                  value.toString(), key});
}

void PageAnnotations::ReadMails(int line) {
    const TextLine& whole = Lines.Lines[static_cast<size_t>(line)];
    const QStringView text = Lines.TextOf(whole);
    for (const QString& mail : MailsIn(text)) {
        const qsizetype at = std::max<qsizetype>(0, text.indexOf(QStringView(mail).first(mail.indexOf(u'@'))));
        const NodeIndex node = NodeAt(line, whole.Begin + at);
        Count(Facts[static_cast<size_t>(node)].Mails);
        Mails.push_back({node, mail});
    }
}

void PageAnnotations::CountUpward() {
    for (NodeIndex node = Page.Count() - 1; node > 0; --node)
        if (const NodeIndex parent = Page.Parent(node); parent != noNode)
            Facts[static_cast<size_t>(parent)] += Facts[static_cast<size_t>(node)];
}

} // namespace Brindle
