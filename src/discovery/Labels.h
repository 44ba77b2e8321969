#pragma once

#include "page/PageTree.h"

#include <QStringView>

#include <span>

namespace Brindle {

/// What names of classes, properties and labels say about what stands beside them; several can be said at once.
enum class Hint : quint32 {
    Name = 1U << 0,
    Title = 1U << 1, ///< of anything
    Phone = 1U << 2,
    Fax = 1U << 3,
    Mail = 1U << 4,
    Website = 1U << 5,
    Street = 1U << 6,
    City = 1U << 7,
    State = 1U << 8,
    PostalCode = 1U << 9,
    Country = 1U << 10,
    Address = 1U << 11,
    Category = 1U << 12,
    Map = 1U << 13,
    Hours = 1U << 14,
    Rating = 1U << 15,
    Review = 1U << 16,
    Price = 1U << 17,
    Date = 1U << 18,
    Author = 1U << 19,
    Description = 1U << 20,
    Distance = 1U << 21,
    Business = 1U << 22, ///< "listing", "restaurant", "company"
    Product = 1U << 23,  ///< something for sale
    Article = 1U << 24,  ///< an article, a post, a comment
    Job = 1U << 25,
    Event = 1U << 26,
    Person = 1U << 27,
    Aside = 1U << 28,   ///< navigation, side columns, footers: not what a page is for
    Advert = 1U << 29,  ///< an advertisement
    Similar = 1U << 30, ///< "related", "recently viewed"
    Register = 1U << 31 ///< a number of a register or of taxes
};
using HintSet = quint32;

constexpr HintSet operator|(Hint one, Hint other) {
    return static_cast<HintSet>(one) | static_cast<HintSet>(other);
}
constexpr HintSet operator|(HintSet set, Hint hint) {
    return set | static_cast<HintSet>(hint);
}
constexpr bool Has(HintSet set, Hint hint) {
    return (set & static_cast<HintSet>(hint)) != 0;
}

/// What the parts of a name say: "listing-phoneNumber", "addressLocality". ASCII case and digits do not matter.
HintSet HintsOfName(QStringView name);

/// What a text says as the label of what stands behind it or in the next cell: "Tel.", "Téléphone :", "電話". 0 when it
/// is no label.
HintSet HintsOfLabel(QStringView text);

/// The label at the beginning of a text, ended by a colon or the like, with what it says.
struct LeadingLabel {
    HintSet Hints = 0;
    qsizetype Length = 0; ///< with what ends it and blanks
};
LeadingLabel LabelAtBegin(QStringView text);

/// Whether a text names a kind of business or a directory of them, in any of many languages: "Restaurants in Cork".
/// `words`: as `BareWords` gives them.
bool NamesBusinesses(QStringView words);

/// Whether a text is a trade, or several of them parted by marks: "Italian", "Nightclub", "Pizza, Seafood".
bool IsTrade(QStringView text);

/// Whether a text names houses that sleep or feed people. `words`: as `BareWords` gives them.
bool NamesHosts(QStringView words);

/// Whether a text names what is no business: a shop's goods, jobs, news, recipes, events. `words`: as `BareWords` gives
/// them.
bool NamesOtherThings(QStringView words);

/// Whether a text is about vacancies: "Electrician (m/f/d)". `words`: as `BareWords` gives them.
bool NamesJobs(QStringView words);

/// Whether a text is the title of a firm's own page about itself: "Contact", "Our offices". `words`: as `BareWords`
/// gives them.
bool NamesOneFirm(QStringView words);

/// Whether a text is one that buttons and links of any list bear: "more", "Website", "Directions". Its case and marks
/// at its ends do not matter.
bool IsButtonText(QStringView text);

} // namespace Brindle
