#pragma once

#include "page/PageTree.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace Brindle {

/// Whether a class or id looks as if a person had named something with it, and it will be the same tomorrow: no name
/// that a build made ("css-1x2y3z", "sc-bdVaJa", "Card_root__x7Yz2"), none with digits, none of a state ("active",
/// "odd").
bool IsSturdyName(QStringView name);

/// A selector, and how little it is to be trusted: 0 is best.
struct CandidateSelector {
    QString Text;
    double Cost = 0;
};

/// Selectors of one element by what it is itself, the best first; at least its name.
std::vector<CandidateSelector> OwnSelectors(const PageTree& page, NodeIndex element);

/// Selectors that could select the elements of a list of which this is one, in the whole page.
std::vector<CandidateSelector> RecordSelectors(const PageTree& page, NodeIndex record);

/// Selectors that could select the element within its record: by itself, by what holds it, by the label before it, and
/// last by its place.
std::vector<CandidateSelector> FieldSelectors(const PageTree& page, NodeIndex record, NodeIndex element,
                                              NodeIndex first = noNode);

} // namespace Brindle
