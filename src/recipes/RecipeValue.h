#pragma once

#include "core/Lead.h"
#include "discovery/AnyPageText.h"
#include "page/PageTree.h"
#include "recipes/Recipe.h"
#include "recipes/RecipePattern.h"
#include "recipes/RecordSpans.h"

#include <QString>
#include <QStringList>

namespace Brindle {

/// A page as values are read from it.
struct ValueSource {
    const PageTree& Page;
    const PageLines& Lines;
    const QString& Base; ///< address to resolve links with
};

/// Whether a column holds the address of a page.
bool IsLinkColumn(Field column);

/// What an element gives for a column, before the pattern cuts the value out of it: the attribute, or its text; a link
/// without an attribute is that of the element, or of the first one in it, or the text that a pattern finds it in.
/// Blanks are levelled; lines are joined by blanks, those of an address by commas, unless the pattern speaks of them.
QString RawFieldValue(const ValueSource& source, NodeIndex node, Field column, const QString& attribute,
                      const RecipePattern& cut = {});

/// Whether a row with its pattern reads the whole of a flat record: ":scope", and the pattern speaks of lines.
bool IsWholeFlatRecord(const RecipeField& row, const RecipePattern& cut, RecordSpan record);
/// The lines of a flat record.
QString FlatRecordText(const ValueSource& source, RecordSpan record);

/// The value as it goes into the lead: links absolute and of http or https, of a website what a counter leads to,
/// "tel:" and "mailto:" taken off; empty when it is nothing of that kind.
QString FinishedFieldValue(Field column, const QString& base, const QString& text);

/// Several values of a row as one: parts of an address with commas, numbers with ";", others with what parts their
/// kind.
QString JoinedValues(Field column, const QStringList& values);

/// Takes the full address of a lead apart, as its country writes addresses; parts that are not sure stay as they are.
void SplitFullAddress(const PageTree& page, const QString& url, const QString& country, Lead& lead);

} // namespace Brindle
