#include "discovery/RecordsContacts.h"

#include "discovery/NextPage.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QSet>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype prose = 160; // characters; a longer line is a description

template <typename List, typename Use>
void Within(const List& list, const RecordRange& range, Use use) {
    auto at = std::lower_bound(list.begin(), list.end(), range.Begin,
                               [](const auto& one, NodeIndex node) { return one.Node < node; });
    for (; at != list.end() && at->Node < range.End; ++at)
        use(*at);
}

} // namespace

QString RedirectTarget(const QString& address) {
    const qsizetype query = address.indexOf(u'?');
    if (query < 0 || address.indexOf(u"=http", query) < 0)
        return {};
    for (const QStringView pair : QStringView(address).sliced(query + 1).split(u'&')) {
        const qsizetype equals = pair.indexOf(u'=');
        if (equals < 0)
            continue;
        QString value = QUrl::fromPercentEncoding(pair.sliced(equals + 1).toUtf8());
        if (value.startsWith(u"http://") || value.startsWith(u"https://"))
            return value;
    }
    return {};
}

QString WebAddressIn(QStringView text) {
    QStringView word = text.trimmed();
    while (!word.isEmpty() && (word.back() == u'/' || word.back() == u'.' || word.back() == u','))
        word.chop(1);
    if (word.size() < 4 || word.size() > 200 ||
        std::any_of(word.begin(), word.end(), [](QChar c) { return c == u' ' || c == u'@'; }) || !word.contains(u'.'))
        return {};
    const QString scheme = SchemeOf(word);
    const bool hasScheme = scheme == u"http" || scheme == u"https";
    const QString host = SiteOf(hasScheme ? word.toString() : u"http://"_s + word.toString());
    const qsizetype dot = host.lastIndexOf(u'.');
    const QStringView top = QStringView(host).sliced(dot + 1);
    const bool isHost =
        dot > 0 && top.size() >= 2 && top.size() <= 12 &&
        std::all_of(top.begin(), top.end(), [](QChar c) { return c.isLetter(); }) &&
        std::all_of(host.begin(), host.end(), [](QChar c) { return c.isLetterOrNumber() || c == u'.' || c == u'-'; });
    if (!isHost)
        return {};
    // "Co.Ltd" is no host: without a prefix it must look like one.
    const bool sure =
        hasScheme || word.startsWith(u"www.", Qt::CaseInsensitive) || (word.toString().isLower() && top.size() <= 4);
    return !sure ? QString() : hasScheme ? word.toString() : u"http://"_s + word.toString();
}

RecordContacts::RecordContacts(const RecordColumns& columns) : columns_(columns), page_(columns.Page) {
    QHash<quint64, int> paths;
    for (size_t record = 0; record < columns.Count(); ++record) {
        const RecordRange& range = columns.List.Records[record];
        const auto count = [record](Uses& uses) {
            if (uses.Records == 0 || uses.Last != record)
                ++uses.Records;
            uses.Last = record;
        };
        bool first = true;
        Within(page_.Phones, range, [&](const PagePhone& phone) {
            count(phones_[phone.Key]);
            if (first && phone.Line >= 0)
                ++paths[columns_.PlaceOf(page_.Page.Parent(phone.Node), range)];
            first = false;
        });
        Within(page_.Mails, range, [&](const PageMail& mail) { count(mails_[mail.Address.toLower()]); });
        Within(page_.Links, range, [&](const PageLink& link) {
            if (link.Kind == LinkKind::Outside)
                count(hosts_[link.Host]);
        });
    }
    for (auto path = paths.cbegin(); path != paths.cend(); ++path)
        if (path.value() * 2 > static_cast<int>(columns.Count()))
            phonePath_ = path.key();
}

void RecordContacts::Read(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    ReadPhones(record, lead, nodes);
    ReadMails(record, lead, nodes);
    ReadLinks(record, name, lead, nodes);
}

// What elements without text between two texts call themselves: pictures of a phone, of a fax.
HintSet RecordContacts::IconsBefore(NodeIndex node, NodeIndex from) const {
    HintSet hints = 0;
    const PageTree& page = page_.Page;
    for (NodeIndex at = node - 1; at > from && at > node - 12; --at) {
        if (page.IsText(at) && page_.FactsOf(at).Characters > 0)
            break;
        if (page.IsElement(at) && page_.FactsOf(at).Characters == 0) {
            hints |= page_.HintsOf(at);
            for (const QStringView name : {u"alt", u"title", u"aria-label"})
                hints |= HintsOfLabel(page.Attribute(at, name));
        }
    }
    return hints;
}

HintSet RecordContacts::KindOf(const PagePhone& phone, qsizetype from, size_t record) const {
    constexpr HintSet kinds = Hint::Phone | Hint::Fax | Hint::Register;
    const PageTree& page = page_.Page;
    const RecordRange& range = columns_.List.Records[record];
    HintSet link = 0;
    int levels = 0;
    for (NodeIndex at = page.IsText(phone.Node) ? page.Parent(phone.Node) : phone.Node; at >= range.Begin && levels < 3;
         at = page.Parent(at), ++levels) {
        link |= page_.HintsOf(at) & kinds;
        for (const QStringView name : {u"title", u"aria-label", u"itemprop"})
            if (const QStringView text = page.Attribute(at, name); !text.isEmpty())
                link |= (HintsOfLabel(text) | (text.size() < 40 ? HintsOfName(text) : 0)) & kinds;
        if (Has(link, Hint::Fax) || Has(link, Hint::Phone))
            break;
    }
    if (phone.Line < 0)
        return link;
    const std::vector<RecordLine>& lines = columns_.Lines[record];
    const auto line = std::lower_bound(lines.begin(), lines.end(), phone.Line,
                                       [](const RecordLine& one, int number) { return one.Line < number; });
    // Right before the number: "… | Fax: 030 124".
    QStringView before = QStringView(page_.Lines.Text).sliced(from, phone.Begin - from);
    // "Phone/Fax: 030 124" is a phone too.
    if (const qsizetype slash = before.lastIndexOf(u'/'); slash > 1 && before.size() - slash < 12) {
        const qsizetype word = before.first(slash).trimmed().lastIndexOf(u' ') + 1;
        if (Has(HintsOfLabel(before.sliced(word, slash - word)), Hint::Phone))
            return static_cast<HintSet>(Hint::Phone);
    }
    const auto mark =
        std::find_if(before.rbegin(), before.rend(), [](QChar c) { return IsAmong(c, u"|;\u00B7\u2022/,"); });
    before = before.last(mark - before.rbegin());
    while (!before.isEmpty()) {
        if (const HintSet hints = HintsOfLabel(before) & kinds; hints != 0)
            return hints;
        const qsizetype blank = before.trimmed().indexOf(u' ');
        if (blank < 0)
            break;
        before = before.trimmed().sliced(blank + 1);
    }
    // "030 124 (Fax)"
    const TextLine& whole = page_.Lines.Lines[static_cast<size_t>(phone.Line)];
    QStringView behind =
        QStringView(page_.Lines.Text).sliced(phone.End, whole.Begin + whole.Length - phone.End).trimmed();
    if (behind.startsWith(u'('))
        if (const qsizetype close = behind.indexOf(u')'); close > 1 && close < 20)
            if (const HintSet hints = HintsOfLabel(behind.sliced(1, close - 1)) & kinds; hints != 0)
                return hints;
    // "<dl class=phones><dt>Fax<dd>030 124": what is written beside a number goes before what holds all of them.
    const bool labelled = line != lines.end() && line->Line == phone.Line;
    if (labelled && (line->Label & (Hint::Fax | Hint::Register)) != 0 && !Has(line->Label, Hint::Phone))
        return line->Label & kinds;
    // "<p class=phone><i class=fa-fax></i> 030 124": what is drawn beside a number goes before what holds it.
    const HintSet icons = IconsBefore(phone.Node, range.Begin) & kinds;
    if (link != 0 && !(Has(icons, Hint::Fax) && !Has(icons, Hint::Phone) && !page.Is(phone.Node, u"a")))
        return link;
    if (icons != 0)
        return icons;
    if (!labelled)
        return 0;
    return (line->Label & kinds) != 0 ? line->Label & kinds : line->Around & kinds;
}

void RecordContacts::ReadPhones(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    struct Found {
        const PagePhone* Phone;
        HintSet Kind;
        bool InProse;
    };
    std::vector<Found> found;
    int line = -1;
    qsizetype from = 0;
    Within(page_.Phones, columns_.List.Records[record], [&](const PagePhone& phone) {
        const TextLine* const whole = phone.Line >= 0 ? &page_.Lines.Lines[static_cast<size_t>(phone.Line)] : nullptr;
        if (whole && phone.Line != line)
            from = whole->Begin;
        line = phone.Line;
        const HintSet kind = KindOf(phone, whole ? std::min(from, phone.Begin) : 0, record);
        found.push_back({&phone, kind, whole && whole->Length > prose && kind == 0});
        from = phone.End;
    });
    const bool plain = std::any_of(found.begin(), found.end(), [](const Found& one) { return !one.InProse; });
    const auto count = static_cast<int>(columns_.Count());
    QSet<QString> seen;
    std::array<int, 2> taken{}; // phones, faxes
    for (const Found& one : found) {
        const QString& key = one.Phone->Key;
        // The directory's own number stands in every record.
        const bool shared = count >= 4 && phones_.value(key).Records * 5 > count * 3;
        if ((one.InProse && plain) || shared || Has(one.Kind, Hint::Register) ||
            (found.size() > 1 && seen.contains(key)))
            continue;
        const bool fax = Has(one.Kind, Hint::Fax) && !Has(one.Kind, Hint::Phone);
        if (taken[fax] >= 4)
            continue;
        if (found.size() > 1)
            seen.insert(key);
        QString& value = fax ? lead.Fax : lead.Phone;
        if (taken[fax]++ == 0)
            value = one.Phone->Shown;
        else
            value += u';' + one.Phone->Shown;
        const auto field = static_cast<size_t>(fax ? Field::Fax : Field::Phone);
        if (nodes[field] == noNode)
            nodes[field] = one.Phone->Node;
    }
    if (taken[0] == 0 && phonePath_ != 0)
        ReadPhoneOfColumn(record, lead, nodes);
    if (lead.Phone.isEmpty())
        ReadLabelledPhone(record, lead, nodes);
}

// Numbers of a small country are short: they count below or behind a label.
void RecordContacts::ReadLabelledPhone(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    for (const RecordLine& line : columns_.Lines[record]) {
        const QStringView value = columns_.ValueOf(line).trimmed();
        if (!Has(line.Label, Hint::Phone) || value.size() < 6 || value.size() > 24)
            continue;
        // "CEP" is a mobile phone here and a postal code there.
        if (Has(line.Label, Hint::PostalCode))
            if (const std::vector<TextSpan> codes = PostalCodesIn(value, page_.Region);
                codes.size() == 1 && codes.front() == TextSpan{0, value.size()})
                continue;
        const bool marks = std::all_of(value.begin(), value.end(), [](QChar c) {
            return c.isDigit() || QStringView(u" ()+-./\u00A0\u2011\u2013").contains(c);
        });
        if (!marks || std::count_if(value.begin(), value.end(), [](QChar c) { return c.isDigit(); }) < 5)
            continue;
        lead.Phone = value.toString();
        nodes[static_cast<size_t>(Field::Phone)] = page_.Lines.Pieces[static_cast<size_t>(line.FirstPiece)].Node;
        return;
    }
}

// A number of a form that is not known counts where the other records have theirs.
void RecordContacts::ReadPhoneOfColumn(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    const RecordRange& range = columns_.List.Records[record];
    for (const RecordLine& line : columns_.Lines[record])
        for (int i = line.FirstPiece; i < line.EndPiece; ++i) {
            const TextPiece& piece = page_.Lines.Pieces[static_cast<size_t>(i)];
            const QStringView text = page_.Lines.TextOf(piece);
            const QStringView value = text.sliced(LabelAtBegin(text).Length);
            const std::vector<TextSpan> codes = PostalCodesIn(value, page_.Region);
            const bool code = codes.size() == 1 && codes.front().End - codes.front().Begin >= value.size();
            if (code || DigitsOfPhone(value).isEmpty() || (line.Label & (Hint::Fax | Hint::Register)) != 0 ||
                HasDate(value) || columns_.PlaceOf(page_.Page.Parent(piece.Node), range) != phonePath_)
                continue;
            lead.Phone = value.toString();
            nodes[static_cast<size_t>(Field::Phone)] = piece.Node;
            return;
        }
}

void RecordContacts::ReadMails(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const {
    QStringList mails;
    const auto count = static_cast<int>(columns_.Count());
    Within(page_.Mails, columns_.List.Records[record], [&](const PageMail& mail) {
        const bool shared = count >= 4 && mails_.value(mail.Address.toLower()).Records * 5 > count * 3;
        if (shared || mails.size() >= 4 || mails.contains(mail.Address, Qt::CaseInsensitive))
            return;
        mails << mail.Address;
        if (nodes[static_cast<size_t>(Field::Email)] == noNode)
            nodes[static_cast<size_t>(Field::Email)] = mail.Node;
    });
    lead.Email = mails.join(u';');
}

bool RecordContacts::SaysWebsite(const PageLink& link, const QString& text, const RecordRange& range) const {
    int levels = 0;
    for (NodeIndex at = link.Node; at >= range.Begin && levels < 3; at = page_.Page.Parent(at), ++levels)
        if (Has(page_.HintsOf(at), Hint::Website))
            return true;
    if (Has(HintsOfLabel(text), Hint::Website) || !WebAddressIn(text).isEmpty())
        return true;
    const BareView words(text);
    return words.View().size() >= 7 && (words.View().contains(u"website") || words.View().contains(u"homepage"));
}

void RecordContacts::ReadLinks(size_t record, NodeIndex name, Lead& lead,
                               std::array<NodeIndex, FieldCount>& nodes) const {
    const RecordRange& range = columns_.List.Records[record];
    const auto count = static_cast<int>(columns_.Count());
    int best = 0;
    QString shown;
    Within(page_.Links, range, [&](const PageLink& link) {
        if (link.Kind == LinkKind::Map && lead.MapLink.isEmpty()) {
            lead.MapLink = link.Address;
            nodes[static_cast<size_t>(Field::MapLink)] = link.Node;
        }
        QString target;
        int score = 0;
        if (link.Kind == LinkKind::Outside) {
            const int records = hosts_.value(link.Host).Records;
            const bool says = SaysWebsite(link, page_.TextWithin(link.Node), range);
            const bool rare = records == 1 || (records <= 3 && count >= 8);
            if (!rare && !says)
                return;
            target = RedirectTarget(link.Address);
            if (!target.isEmpty() && SiteOf(target) != page_.Site && SiteOf(target) != link.Host) {
                // A counter that passes on.
            } else if (records * 2 > count && count >= 3) {
                // One host for all: no website.
                target.clear();
                if (target.isEmpty() && says)
                    target = WebAddressIn(page_.TextWithin(link.Node));
                if (target.isEmpty())
                    return;
            } else {
                target = link.Address;
            }
            score = (says ? 4 : 1) + (rare ? 2 : 0) + (link.Node == name ? 1 : 0);
        } else if (link.Kind == LinkKind::Own || link.Kind == LinkKind::None) {
            const QString text = page_.TextWithin(link.Node);
            target = WebAddressIn(text);
            if (target.isEmpty() && SaysWebsite(link, text, range))
                target = RedirectTarget(link.Address);
            if (target.isEmpty() || SiteOf(target) == page_.Site)
                return;
            score = 3;
        }
        if (score > best) {
            best = score;
            lead.Website = target;
            nodes[static_cast<size_t>(Field::Website)] = link.Node;
        }
    });
    if (best > 0)
        return;
    // Without a link: "www.joes.example" as text.
    for (const RecordLine& line : columns_.Lines[record]) {
        const QStringView text = columns_.ValueOf(line);
        if (text.size() > 300 || !text.contains(u'.'))
            continue;
        for (QStringView word : text.split(u' ', Qt::SkipEmptyParts)) {
            if (const qsizetype www = word.indexOf(u":www."); www >= 0) // "Web:www.joes.example"
                word = word.sliced(www + 1);
            const bool is =
                word.startsWith(u"www.", Qt::CaseInsensitive) || word.startsWith(u"http", Qt::CaseInsensitive);
            const bool says =
                is || (text.size() <= 120 && (Has(line.Label, Hint::Website) || Has(line.Around, Hint::Website)));
            const QString address = says ? WebAddressIn(word) : QString();
            if (address.isEmpty() || SiteOf(address) == page_.Site)
                continue;
            lead.Website = address;
            nodes[static_cast<size_t>(Field::Website)] = page_.Lines.Pieces[static_cast<size_t>(line.FirstPiece)].Node;
            return;
        }
    }
}

} // namespace Brindle
