#include "recipes/TeachTexts.h"

#include "core/Errors.h"
#include "discovery/PostalAddress.h"
#include "page/Selector.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Phone.h"

#include <QUrl>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestText = 200;
constexpr size_t mostTexts = 400;

// In which order a person is likely to point at what is not known yet.
constexpr Field likelyFields[]{Field::BusinessName, Field::DetailsLink, Field::Phone, Field::FullAddress,
                               Field::Website,      Field::Email,       Field::Fax,   Field::Category};

bool ShowsNothing(const PageTree& page, NodeIndex node) {
    for (const char16_t* const name : {u"script", u"style", u"template", u"noscript", u"head", u"option"})
        if (page.Is(node, name))
            return true;
    return false;
}

} // namespace

QString ShownText(const PageTree& page, NodeIndex element) {
    QString text;
    for (NodeIndex node = element; node < page.End(element) && text.size() < longestText; ++node)
        if (page.IsText(node))
            text += page.Text(node) + u' ';
    return text.simplified().left(longestText);
}

bool IsLink(const PageTree& page, NodeIndex node) {
    return page.Is(node, u"a") && page.HasAttribute(node, u"href");
}

NodeIndex LinkOf(const PageTree& page, NodeIndex element) {
    for (NodeIndex node = element; node != noNode; node = page.Parent(node))
        if (IsLink(page, node))
            return node;
    for (NodeIndex node = element; node < page.End(element); ++node)
        if (IsLink(page, node))
            return node;
    return noNode;
}

bool IsInHeading(const PageTree& page, NodeIndex element) {
    for (NodeIndex node = element; node != noNode; node = page.Parent(node))
        if (const QStringView name = page.Name(node);
            name.size() == 2 && name[0] == u'h' && name[1] >= u'1' && name[1] <= u'6')
            return true;
    return false;
}

std::vector<NodeIndex> Selected(const PageTree& page, const QString& selector) {
    try {
        return Selector::Parse(selector).SelectAll(page);
    } catch (const Failure&) {
        return {};
    }
}

std::vector<ChoosableText> TextsWithin(const PageTree& page, NodeIndex begin, NodeIndex end) {
    std::vector<ChoosableText> texts;
    for (NodeIndex node = begin; node != noNode && node < end && texts.size() < mostTexts; ++node) {
        if (page.IsElement(node) && ShowsNothing(page, node)) {
            node = page.End(node) - 1;
            continue;
        }
        if (!page.IsText(node))
            continue;
        const QString text = page.Text(node).toString().simplified().left(longestText);
        if (!text.isEmpty())
            texts.push_back({page.Parent(node), text});
    }
    return texts;
}

std::vector<Field> LikelyFieldsOf(const PageTree& page, NodeIndex element, const FieldHints& hints) {
    std::vector<Field> order;
    const auto put = [&order](Field column) {
        if (std::find(order.begin(), order.end(), column) == order.end())
            order.push_back(column);
    };
    const auto isFilled = [&hints](Field column) {
        return std::find(hints.Filled.begin(), hints.Filled.end(), column) != hints.Filled.end();
    };
    const QString text = ShownText(page, element);
    for (const Field column : hints.Taken)
        put(column);
    const NodeIndex link = LinkOf(page, element);
    const QString href = link == noNode ? QString() : page.Attribute(link, u"href").trimmed().toString();
    if (text.contains(u'@') || href.startsWith(u"mailto:", Qt::CaseInsensitive))
        put(Field::Email);
    if (href.startsWith(u"tel:", Qt::CaseInsensitive) || !FindPhones(text, hints.Region).empty())
        put(text.contains(u"fax", Qt::CaseInsensitive) ? Field::Fax : Field::Phone);
    if (HasStreetWord(text) || LooksLikeAddress(text, hints.Region))
        put(Field::FullAddress);
    const QUrl target(link == noNode ? QString() : ResolveAddress(hints.Url, href));
    const bool toWeb = target.scheme() == u"http" || target.scheme() == u"https";
    const bool outside = toWeb && target.host() != QUrl(hints.Url).host();
    if (outside)
        put(Field::Website);
    if (IsInHeading(page, element) || !isFilled(Field::BusinessName))
        put(Field::BusinessName);
    if (toWeb && !outside)
        put(Field::DetailsLink);
    for (const Field column : likelyFields)
        if (!isFilled(column))
            put(column);
    for (int column = 0; column < FieldCount; ++column)
        put(static_cast<Field>(column));
    return order;
}

} // namespace Brindle
