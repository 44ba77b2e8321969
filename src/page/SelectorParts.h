#pragma once

#include <QString>

#include <vector>

namespace Brindle {

struct SelectorList;

enum class SelectorTest : quint8 {
    Element,   // LowerName
    Class,     // Value
    Id,        // Value
    Attribute, // LowerName, Operator, Value
    NthChild,  // Step, Offset
    NthOfType, // Step, Offset
    LastChild,
    HasText, // Value, with its blanks collapsed
    Scope,
    Not, // Arguments
    Has, // Arguments, each with a relation to the element
};

enum class AttributeOperator : quint8 { Exists, Equals, Begins, Ends, Contains, HasWord, BeginsWithPart };

enum class Relation : quint8 { None, Descendant, Child, Next, Later };

struct SimpleSelector {
    SelectorTest Test = SelectorTest::Element;
    AttributeOperator Operator = AttributeOperator::Exists;
    bool AnyCase = false;
    qint32 Step = 0;
    qint32 Offset = 0;
    QString LowerName;
    QString Value;
    int Arguments = -1; // place in SelectorList::Nested
};

/// Simple selectors of one element, with its relation to what stands before.
struct CompoundSelector {
    Relation Before = Relation::None;
    std::vector<SimpleSelector> Tests; // none for "*"
};

using ComplexSelector = std::vector<CompoundSelector>;

/// A parsed selector; the arguments of its pseudo-classes stand in one table, inner ones before outer ones.
struct SelectorList {
    std::vector<ComplexSelector> Complex;
    std::vector<std::vector<ComplexSelector>> Nested;
};

} // namespace Brindle
