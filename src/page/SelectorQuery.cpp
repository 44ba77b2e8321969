#include "page/Selector.h"
#include "page/SelectorParts.h"
#include "page/TextSearch.h"
#include "toolkit/Ascii.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Brindle {

namespace {

// A mark for each node of a range.
using Marks = std::vector<quint8>;

size_t At(NodeIndex node) {
    return static_cast<size_t>(node);
}

bool HasWord(QStringView words, const TextSearch& word) {
    for (qsizetype i = 0; i < words.size();) {
        while (i < words.size() && Ascii::IsBlank(words[i]))
            ++i;
        const qsizetype begin = i;
        while (i < words.size() && !Ascii::IsBlank(words[i]))
            ++i;
        if (i > begin && word.Equals(words.sliced(begin, i - begin)))
            return true;
    }
    return false;
}

bool Agrees(QStringView value, AttributeOperator how, const TextSearch& search) {
    switch (how) {
    case AttributeOperator::Exists:
        return true;
    case AttributeOperator::Equals:
        return search.Equals(value);
    case AttributeOperator::Begins:
        return search.Length() > 0 && search.Begins(value);
    case AttributeOperator::Ends:
        return search.Length() > 0 && search.Ends(value);
    case AttributeOperator::Contains:
        return search.Length() > 0 && search.IsIn(value);
    case AttributeOperator::HasWord:
        return HasWord(value, search);
    case AttributeOperator::BeginsWithPart:
        return search.Begins(value) && (value.size() == search.Length() || value[search.Length()] == u'-');
    }
    return false;
}

// Attributes of foreign elements that lie in a namespace, where a selector does not reach them (HTML, 13.2.6.1).
bool LiesInNamespace(QStringView attribute) {
    static constexpr QStringView names[] = {u"xlink:actuate", u"xlink:arcrole", u"xlink:href", u"xlink:role",
                                            u"xlink:show",    u"xlink:title",   u"xlink:type", u"xml:lang",
                                            u"xml:space",     u"xmlns",         u"xmlns:xlink"};
    return std::find(std::begin(names), std::end(names), attribute) != std::end(names);
}

using Nodes = std::vector<NodeIndex>;

// Two lists in document order as one.
Nodes Joined(const Nodes& list, Nodes::const_iterator begin, Nodes::const_iterator end) {
    Nodes joined;
    joined.reserve(list.size() + static_cast<size_t>(end - begin));
    std::set_union(list.begin(), list.end(), begin, end, std::back_inserter(joined));
    return joined;
}

// Whether a * n + b is `place` for an n from 0 on.
bool IsPlace(qint64 place, qint64 a, qint64 b) {
    return a == 0 ? place == b : (place - b) % a == 0 && (place - b) / a >= 0;
}

} // namespace

// Finds for each part of the selector all elements of the page that fit it, part by part, so that no element is looked
// at more than once for one part.
class SelectorQuery::Evaluation {
public:
    Evaluation(const PageTree& tree, const SelectorList& list) : tree_(tree) {
        MarkElements();
        nested_.reserve(list.Nested.size());
        for (const std::vector<ComplexSelector>& arguments : list.Nested)
            nested_.push_back(MarksOf(arguments));
        for (const ComplexSelector& complex : list.Complex) {
            const auto& first = complex.front().Tests;
            const bool scoped = std::any_of(first.begin(), first.end(), [](const SimpleSelector& test) {
                return test.Test == SelectorTest::Scope;
            });
            (scoped ? scoped_ : unscoped_).push_back(Prepared(complex));
        }
    }

    const PageTree& Tree() const { return tree_; }
    bool HasScoped() const { return !scoped_.empty(); }

    Nodes FindUnscoped() const {
        Marks found(At(tree_.Count()));
        for (const Complex& complex : unscoped_)
            Unite(found, Forward(complex, 0, tree_.Count(), noNode));
        return Listed(found, 0);
    }
    Nodes FindScoped(NodeIndex scope) const {
        if (!HasScoped() || scope == noNode || !elements_[At(scope)])
            return {};
        Marks found(At(tree_.End(scope) - scope));
        for (const Complex& complex : scoped_)
            Unite(found, Forward(complex, scope, tree_.End(scope), scope));
        return Listed(found, scope);
    }
    bool IsScopeAlone(NodeIndex node) const {
        return elements_[At(node)] && std::any_of(scoped_.begin(), scoped_.end(), [&](const Complex& complex) {
                   return complex.size() == 1 && Fits(complex.front(), node, node);
               });
    }

private:
    struct Test {
        const SimpleSelector* Of = nullptr;
        int HtmlName = -1;
        TextSearch Value;
        Marks WithText;
    };
    struct Compound {
        Relation Before = Relation::None;
        std::vector<Test> Tests;
    };
    using Complex = std::vector<Compound>;

    static void Unite(Marks& all, const Marks& more) {
        for (size_t i = 0; i < all.size(); ++i)
            all[i] |= more[i];
    }
    static Nodes Listed(const Marks& marks, NodeIndex first) {
        Nodes nodes;
        for (size_t i = 0; i < marks.size(); ++i)
            if (marks[i])
                nodes.push_back(first + static_cast<NodeIndex>(i));
        return nodes;
    }

    // Elements that are of the document, which the contents of templates are not.
    void MarkElements() {
        elements_.resize(At(tree_.Count()));
        for (NodeIndex node = 0; node < tree_.Count();) {
            elements_[At(node)] = tree_.IsElement(node);
            node = tree_.IsTemplate(node) ? tree_.End(node) : node + 1;
        }
    }

    Complex Prepared(const ComplexSelector& complex) {
        Complex made;
        for (const CompoundSelector& compound : complex) {
            Compound& next = made.emplace_back();
            next.Before = compound.Before;
            for (const SimpleSelector& simple : compound.Tests)
                next.Tests.push_back(Prepared(simple));
        }
        return made;
    }

    Test Prepared(const SimpleSelector& simple) {
        Test test;
        test.Of = &simple;
        switch (simple.Test) {
        case SelectorTest::Element:
            test.HtmlName = tree_.NameIdOf(simple.LowerName);
            break;
        case SelectorTest::Class:
            test.Value = TextSearch(simple.Value, false);
            break;
        case SelectorTest::Attribute:
            test.Value = TextSearch(simple.Value, simple.AnyCase);
            break;
        case SelectorTest::NthChild:
            CountChildren();
            break;
        case SelectorTest::NthOfType:
            CountTypes();
            break;
        case SelectorTest::LastChild:
            MarkLastChildren();
            break;
        case SelectorTest::HasText:
            test.WithText = ElementsWithText(simple.Value);
            break;
        case SelectorTest::Id:
        case SelectorTest::Scope:
        case SelectorTest::Not:
        case SelectorTest::Has:
            break;
        }
        return test;
    }

    bool Fits(const Compound& compound, NodeIndex node, NodeIndex scope) const {
        return std::all_of(compound.Tests.begin(), compound.Tests.end(),
                           [&](const Test& test) { return Passes(test, node, scope); });
    }

    bool Passes(const Test& test, NodeIndex node, NodeIndex scope) const {
        const SimpleSelector& simple = *test.Of;
        switch (simple.Test) {
        case SelectorTest::Element:
            // Engines compare the names of foreign elements in any case.
            return tree_.Space(node) == NodeSpace::Html ? tree_.NameId(node) == test.HtmlName
                                                        : IsSameInAnyCase(tree_.Name(node), simple.LowerName);
        case SelectorTest::Class:
            return HasWord(tree_.Attribute(node, u"class"), test.Value);
        case SelectorTest::Id:
            return !simple.Value.isEmpty() && tree_.Attribute(node, u"id") == simple.Value;
        case SelectorTest::Attribute: {
            const QStringView value = tree_.Space(node) == NodeSpace::Html ? tree_.Attribute(node, simple.LowerName)
                                                                           : ForeignAttribute(node, simple.LowerName);
            return !value.isNull() && Agrees(value, simple.Operator, test.Value);
        }
        case SelectorTest::NthChild:
            return IsPlace(places_[At(node)], simple.Step, simple.Offset);
        case SelectorTest::NthOfType:
            return IsPlace(placesOfType_[At(node)], simple.Step, simple.Offset);
        case SelectorTest::LastChild:
            return last_[At(node)];
        case SelectorTest::HasText:
            return test.WithText[At(node)];
        case SelectorTest::Scope:
            return node == scope;
        case SelectorTest::Not:
            return !nested_[static_cast<size_t>(simple.Arguments)][At(node)];
        case SelectorTest::Has:
            return nested_[static_cast<size_t>(simple.Arguments)][At(node)];
        }
        return false;
    }

    // An attribute of a foreign element: engines compare the names of these in any case.
    QStringView ForeignAttribute(NodeIndex node, const QString& lowerName) const {
        for (const PageAttribute& attribute : tree_.Attributes(node))
            if (IsSameInAnyCase(attribute.Name, lowerName) && !LiesInNamespace(attribute.Name))
                return attribute.Value;
        return {};
    }

    // The elements from `first` to `end` that the whole selector fits, part by part from its beginning.
    Marks Forward(const Complex& complex, NodeIndex first, NodeIndex end, NodeIndex scope) const {
        Marks before;
        for (const Compound& compound : complex) {
            Marks fitting(At(end - first));
            if (&compound == &complex.front() && scope != noNode)
                fitting[0] = Fits(compound, scope, scope);
            else if (&compound == &complex.front())
                ForEachElement(first, end,
                               [&](NodeIndex node) { fitting[At(node - first)] = Fits(compound, node, scope); });
            else
                FitRelated(compound, before, fitting, first, end);
            before = std::move(fitting);
        }
        return before;
    }

    template <typename Function>
    void ForEachElement(NodeIndex first, NodeIndex end, Function function) const {
        for (NodeIndex node = first; node < end; ++node)
            if (elements_[At(node)])
                function(node);
    }

    // Marks what fits and stands in its relation to one of `before`.
    void FitRelated(const Compound& compound, const Marks& before, Marks& fitting, NodeIndex first,
                    NodeIndex end) const {
        // Of each parent: whether it lies within such a one; or how it is with its children up to here.
        Marks state(At(end - first));
        ForEachElement(first, end, [&](NodeIndex node) {
            const NodeIndex parent = tree_.Parent(node);
            if (parent < first)
                return;
            quint8& above = state[At(parent - first)];
            bool related = above;
            switch (compound.Before) {
            case Relation::Descendant:
                related = above || before[At(parent - first)];
                state[At(node - first)] = related;
                break;
            case Relation::Next:
                above = before[At(node - first)];
                break;
            case Relation::Later:
                above |= before[At(node - first)];
                break;
            case Relation::Child:
            case Relation::None:
                related = before[At(parent - first)];
                break;
            }
            fitting[At(node - first)] = related && Fits(compound, node, noNode);
        });
    }

    // The elements that one of the arguments of a :not() fits, or that have what one of those of a :has() asks for.
    Marks MarksOf(const std::vector<ComplexSelector>& arguments) {
        Marks all(At(tree_.Count()));
        for (const ComplexSelector& argument : arguments) {
            const Complex complex = Prepared(argument);
            Unite(all, complex.front().Before == Relation::None ? Forward(complex, 0, tree_.Count(), noNode)
                                                                : Backward(complex));
        }
        return all;
    }

    // From the end of a selector to its beginning: the elements that have what it asks for.
    Marks Backward(const Complex& complex) const {
        Marks having;
        for (auto compound = complex.rbegin(); compound != complex.rend(); ++compound) {
            Marks fitting(At(tree_.Count()));
            ForEachElement(0, tree_.Count(), [&](NodeIndex node) {
                fitting[At(node)] = (having.empty() || having[At(node)]) && Fits(*compound, node, noNode);
            });
            having = HavingRelated(fitting, compound->Before);
        }
        return having;
    }

    // The elements that have one of these in that relation to them.
    Marks HavingRelated(const Marks& marked, Relation relation) const {
        Marks having(marked.size());
        switch (relation) {
        case Relation::Descendant:
        case Relation::Child:
            for (NodeIndex node = tree_.Count() - 1; node >= 0; --node)
                if (const NodeIndex parent = tree_.Parent(node);
                    parent != noNode && (marked[At(node)] || (relation == Relation::Descendant && having[At(node)])))
                    having[At(parent)] = true;
            break;
        case Relation::Next: {
            std::vector<NodeIndex> lastOf(marked.size(), noNode);
            ForEachElement(0, tree_.Count(), [&](NodeIndex node) {
                if (const NodeIndex parent = tree_.Parent(node); parent != noNode) {
                    const NodeIndex previous = std::exchange(lastOf[At(parent)], node);
                    if (marked[At(node)] && previous != noNode)
                        having[At(previous)] = true;
                }
            });
            break;
        }
        case Relation::Later: {
            Marks seenIn(marked.size());
            for (NodeIndex node = tree_.Count() - 1; node >= 0; --node)
                if (const NodeIndex parent = tree_.Parent(node); parent != noNode && elements_[At(node)]) {
                    having[At(node)] = seenIn[At(parent)];
                    seenIn[At(parent)] |= marked[At(node)];
                }
            break;
        }
        case Relation::None:
            break;
        }
        return having;
    }

    void CountChildren() {
        if (!places_.empty())
            return;
        places_.assign(elements_.size(), 1);
        std::vector<qint32> counts(elements_.size());
        ForEachElement(0, tree_.Count(), [&](NodeIndex node) {
            if (const NodeIndex parent = tree_.Parent(node); parent != noNode)
                places_[At(node)] = ++counts[At(parent)];
        });
    }

    void CountTypes() {
        if (!placesOfType_.empty())
            return;
        placesOfType_.assign(elements_.size(), 1);
        constexpr int spaces = 3;
        std::vector<qint32> counts(static_cast<size_t>(tree_.NameCount()) * spaces);
        const auto countOf = [&](NodeIndex node) -> qint32& {
            return counts[static_cast<size_t>(tree_.NameId(node) * spaces + static_cast<int>(tree_.Space(node)))];
        };
        ForEachElement(0, tree_.Count(), [&](NodeIndex parent) {
            for (NodeIndex node = tree_.FirstChild(parent); node != noNode; node = tree_.NextSibling(node))
                if (elements_[At(node)])
                    placesOfType_[At(node)] = ++countOf(node);
            for (NodeIndex node = tree_.FirstChild(parent); node != noNode; node = tree_.NextSibling(node))
                if (elements_[At(node)])
                    countOf(node) = 0;
        });
    }

    void MarkLastChildren() {
        if (!last_.empty())
            return;
        last_.resize(elements_.size());
        Marks seenIn(elements_.size());
        for (NodeIndex node = tree_.Count() - 1; node >= 0; --node)
            if (elements_[At(node)]) {
                const NodeIndex parent = tree_.Parent(node);
                last_[At(node)] = parent == noNode || !std::exchange(seenIn[At(parent)], true);
            }
    }

    Marks ElementsWithText(const QString& text) {
        CollectText();
        std::vector<qsizetype> places;
        const TextSearch search(text, false);
        search.ForEach(text_, [&places](qsizetype place) {
            places.push_back(place);
            return true;
        });
        Marks found(elements_.size());
        auto next = places.cbegin();
        ForEachElement(0, tree_.Count(), [&](NodeIndex node) {
            while (next != places.cend() && *next < textBegins_[At(node)])
                ++next;
            found[At(node)] = next != places.cend() && *next + text.size() <= textBegins_[At(tree_.End(node))];
        });
        return found;
    }

    // The page's text with one blank for each run of them, and where each node's begins.
    void CollectText() {
        if (!textBegins_.empty())
            return;
        textBegins_.resize(elements_.size() + 1);
        bool blank = false;
        for (NodeIndex node = 0; node < tree_.Count();) {
            const NodeIndex next = IsUnshown(node) ? tree_.End(node) : node + 1;
            if (next == node + 1 && tree_.IsText(node)) {
                textBegins_[At(node++)] = text_.size();
                AddText(tree_.Text(next - 1), blank);
            }
            for (; node < next; ++node)
                textBegins_[At(node)] = text_.size();
        }
        textBegins_.back() = text_.size();
    }

    void AddText(QStringView text, bool& blank) {
        for (const QChar c : text) {
            if (Ascii::IsBlank(c) || c == QChar::Nbsp) {
                blank = true;
                continue;
            }
            if (std::exchange(blank, false))
                text_ += u' ';
            text_ += c;
        }
    }

    bool IsUnshown(NodeIndex node) const {
        const QStringView name = tree_.Name(node);
        return tree_.IsTemplate(node) || name == u"script" || name == u"style" || name == u"noscript";
    }

    const PageTree& tree_;
    Marks elements_;
    std::vector<Complex> unscoped_;
    std::vector<Complex> scoped_;
    std::vector<Marks> nested_;
    std::vector<qint32> places_;
    std::vector<qint32> placesOfType_;
    Marks last_;
    QString text_;
    std::vector<qsizetype> textBegins_;
};

SelectorQuery::SelectorQuery(const PageTree& tree, Selector selector)
    : selector_(std::move(selector)),
      evaluation_(std::make_unique<Evaluation>(tree, selector_.Parts())),
      unscoped_(evaluation_->FindUnscoped()) {
    all_ = unscoped_;
    if (evaluation_->HasScoped())
        all_ = Joined(evaluation_->FindScoped(tree.Root()), unscoped_.begin(), unscoped_.end());
}

SelectorQuery::~SelectorQuery() = default;

bool SelectorQuery::Matches(NodeIndex node) const {
    return std::binary_search(unscoped_.begin(), unscoped_.end(), node) || evaluation_->IsScopeAlone(node);
}

std::vector<NodeIndex> SelectorQuery::Within(NodeIndex node) const {
    const auto begin = std::upper_bound(unscoped_.begin(), unscoped_.end(), node);
    const auto end = std::lower_bound(begin, unscoped_.end(), evaluation_->Tree().End(node));
    return evaluation_->HasScoped() ? Joined(evaluation_->FindScoped(node), begin, end)
                                    : std::vector<NodeIndex>(begin, end);
}

NodeIndex SelectorQuery::FirstWithin(NodeIndex node) const {
    if (evaluation_->HasScoped()) {
        const std::vector<NodeIndex> all = Within(node);
        return all.empty() ? noNode : all.front();
    }
    const auto first = std::upper_bound(unscoped_.begin(), unscoped_.end(), node);
    return first != unscoped_.end() && *first < evaluation_->Tree().End(node) ? *first : noNode;
}

bool Selector::Matches(const PageTree& tree, NodeIndex node) const {
    return SelectorQuery(tree, *this).Matches(node);
}

std::vector<NodeIndex> Selector::SelectAll(const PageTree& tree) const {
    return SelectorQuery(tree, *this).All();
}

std::vector<NodeIndex> Selector::SelectAll(const PageTree& tree, NodeIndex within) const {
    return SelectorQuery(tree, *this).Within(within);
}

} // namespace Brindle
