#pragma once

#include "discovery/AnyPageText.h"
#include "discovery/Labels.h"
#include "discovery/PostalAddress.h"
#include "page/PageTree.h"
#include "toolkit/Phone.h"

#include <QString>

#include <utility>
#include <vector>

namespace Brindle {

/// Where a link leads.
enum class LinkKind : quint8 {
    None,    ///< nowhere, into the page, to a script
    Own,     ///< another page of this site
    Outside, ///< another site
    Social,  ///< a network on which businesses have pages, an app shop
    Map,     ///< a map service or a map page of this site
    Phone,
    Mail
};

/// Whether an address is one of a map service.
bool IsMapAddress(const QString& host, const QString& address);

/// A link or a click target of the page.
struct PageLink {
    NodeIndex Node = noNode;
    LinkKind Kind = LinkKind::None;
    QString Address; ///< absolute; of phone and mail: what stands behind the scheme, decoded
    QString Host;    ///< as `SiteOf` gives it
};

/// A phone number in the text, or in a link whose text is none.
struct PagePhone {
    NodeIndex Node = noNode; ///< the text node where it begins, or the link
    int Line = -1;           ///< -1: it stands in a link alone
    qsizetype Begin = 0;     ///< in `PageLines::Text`
    qsizetype End = 0;
    QString Shown;
    QString Key; ///< equal for equal numbers
};

/// A mail address in the text or in a link.
struct PageMail {
    NodeIndex Node = noNode;
    QString Address;
};

/// How often something stands within an element, at most 255 times each.
struct NodeFacts {
    quint8 Phones = 0;
    quint8 Mails = 0;
    quint8 Websites = 0;
    quint8 Maps = 0;
    quint8 PostalCodes = 0;
    quint8 Streets = 0;
    quint8 Headings = 0;
    quint8 OwnLinks = 0;
    quint8 Names = 0;     ///< elements that call themselves a name
    quint8 Addresses = 0; ///< or an address
    quint8 Cities = 0;
    quint8 Categories = 0;
    quint8 Strong = 0; ///< bold texts
    quint8 Prices = 0;
    quint8 Dates = 0;
    quint8 Ratings = 0;
    quint32 Characters = 0; ///< of shown text

    NodeFacts& operator+=(const NodeFacts& other);
};

/// What a page's nodes hold that lists of businesses have: made in one pass over the page, counted upward in another.
class PageAnnotations {
public:
    PageAnnotations(const PageTree& page, const PageLines& lines, const QString& url, const AddressHints& country);

    const PageTree& Page;
    const PageLines& Lines;
    QString Url;
    QString Base; ///< what links are relative to
    QString Site; ///< host of the page
    AddressHints Country;
    QString Region; ///< country of the page, ISO 3166 alpha-2; empty: unknown

    std::vector<HintSet> Hints;   ///< by node: what the element's own names say
    std::vector<NodeFacts> Facts; ///< by node
    std::vector<PageLink> Links;  ///< in the page's order, as the following
    std::vector<PagePhone> Phones;
    std::vector<PageMail> Mails;
    std::vector<bool> IsAddressLine; ///< by line: it has a postal code or a street
    std::vector<bool> IsCodeLine;    ///< by line: it has a postal code
    std::vector<bool> IsStreetLine;  ///< by line: it has a street
    std::vector<bool> IsDateLine;    ///< by line: it has a date
    std::vector<bool> IsPriceLine;   ///< by line: it has an amount of money

    HintSet HintsOf(NodeIndex node) const { return Hints[static_cast<size_t>(node)]; }
    const NodeFacts& FactsOf(NodeIndex node) const { return Facts[static_cast<size_t>(node)]; }
    /// The link that the node is; null when it is none.
    const PageLink* LinkAt(NodeIndex node) const;
    /// The text around a link or other element.
    QString TextWithin(NodeIndex node, QStringView between = u" ") const {
        return ShownText(Lines, node, Page.End(node), between);
    }

    /// "4.5 (218) 135 Patrick Street": how well a place is liked, and by how many.
    static bool BeginsWithRating(QStringView number);

private:
    void ReadElements();
    static bool TellsRating(QStringView label);
    void ReadElement(NodeIndex node);
    void ReadData(NodeIndex node, QStringView name, QStringView value);
    void ReadLink(NodeIndex node, QStringView href);
    void ReadLines();
    void ReadPhones(int line);
    static bool HidesDigits(QStringView behind);
    bool EndsInPostalCode(QStringView line, const FoundPhone& place) const;
    bool SaysPhone(int line) const;
    void ReadLabelledPhone(int line);
    void ReadMails(int line);
    void AddPhone(const PagePhone& phone);
    NodeIndex NodeAt(int line, qsizetype position) const;
    void CountUpward();

    QString baseSite_;                                      // host of `Base`
    QStringView ownPage_;                                   // `Url` without its fragment
    std::vector<std::pair<NodeIndex, QString>> dataPhones_; // of attributes
};

/// The digits of a text that looks like a phone number and nothing else; empty when it does not.
QString DigitsOfPhone(QStringView text);
/// The mail addresses in a text, also where "@" is written "[at]" or the like.
QStringList MailsIn(QStringView text);
/// An address that a page keeps from robots as hexadecimal bytes, each changed by the first; empty when it is none.
QString DecodedMail(QStringView hexadecimal);
/// Whether the text has a date, whether it has an amount of money.
bool HasDate(QStringView text);
bool HasPrice(QStringView text);

} // namespace Brindle
