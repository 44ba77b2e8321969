#pragma once

#include "core/Lead.h"

#include <QString>

#include <array>
#include <vector>

namespace Brindle {

/// How one field of a lead is read.
struct RecipeField {
    Field Column = Field::BusinessName;
    QString Selector;          ///< CSS, within the record; ":scope" is the record itself
    QString Attribute{};       ///< that holds the value; empty: the text, for links "href"
    QString Pattern{};         ///< regular expression: its first group, or all that it matches; empty: the whole value
    bool Join = false;         ///< all that the selector selects makes the value, not the first that holds something
    bool SplitAddress = false; ///< of the full address: street, city, state, postal code and country are taken from it

    bool operator==(const RecipeField&) const = default;
};

/// In how many of the records each field is filled.
struct RecipeCounts {
    int Records = 0; ///< 0: nothing was counted
    std::array<int, FieldCount> Filled{};

    bool operator==(const RecipeCounts&) const = default;
};

/// What stands for the record selector where the records are those of the page's structured data.
inline constexpr QStringView structuredRecords = u"structured";
/// What stands for the selector of the next page where it is found as on any page.
inline constexpr QStringView automaticNextPage = u"auto";

/// A directory, described so that its result pages can be read.
struct Recipe {
    QString Name;      ///< for people
    QString Country;   ///< ISO 3166 alpha-2 or a name; may be empty
    QString Home;      ///< address of the home page
    QString Search;    ///< address of a search with {what} and {where} in it; empty: none is known
    QString Records;   ///< CSS of the records' elements, or `structuredRecords`
    bool Flat = false; ///< a record goes on behind its element, up to the next one's or the end of what holds it
    std::vector<RecipeField> Fields;        ///< in the order of the columns, each column once
    QString Next;                           ///< CSS of the link to the next page, or `automaticNextPage`; empty: none
    QString NextAttribute;                  ///< that holds its address; empty: "href"
    QString DetailsLink;                    ///< CSS of the link to a record's own page; empty: none, or a field is it
    bool Details = false;                   ///< each record's own page is to be read too
    std::vector<RecipeField> DetailsFields; ///< what is read there, beside its structured data
    RecipeCounts Taught;                    ///< what was seen when it was made

    bool operator==(const Recipe&) const = default;
};

} // namespace Brindle
