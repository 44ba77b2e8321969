#include "page/PageTreeBuilder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace Brindle {

PageTreeBuilder::PageTreeBuilder(PageTree& tree, qsizetype expectedCharacters) : tree_(tree) {
    tree_.names_.clear();
    tree_.attributeNames_.clear();
    // Only what is written to takes memory.
    tree_.characters_.resize(expectedCharacters + 64);
}

int PageTreeBuilder::NameNumber(QByteArrayView name) {
    const QByteArray key = name.toByteArray();
    const auto known = names_.constFind(key);
    if (known != names_.cend())
        return *known;
    // A page with more names than numbers: the last number stands for the rest, by the first such name.
    if (tree_.names_.size() > std::numeric_limits<quint16>::max())
        return std::numeric_limits<quint16>::max();
    const auto number = static_cast<int>(tree_.names_.size());
    tree_.names_.push_back(QString::fromUtf8(name));
    names_.insert(key, number);
    return number;
}

void PageTreeBuilder::OpenElement(NodeSpace space, int nameNumber) {
    ++elements_;
    pieces_.push_back({.First = static_cast<quint32>(attributes_.size()),
                       .Count = 0,
                       .NameId = static_cast<quint16>(nameNumber),
                       .What = Kind::Element,
                       .Space = space});
}

void PageTreeBuilder::AddAttribute(QByteArrayView prefix, QByteArrayView name, QByteArrayView value) {
    const quint32 number = AttributeName(prefix, name);
    if (std::exchange(lastElementWith_[number], elements_) == elements_)
        return;
    const qsizetype before = used_;
    const quint32 begin = AddCharacters(value);
    attributes_.push_back({number, begin, static_cast<quint32>(used_ - before)});
    ++pieces_.back().Count;
}

void PageTreeBuilder::CloseElement() {
    pieces_.push_back({.What = Kind::Close});
}

void PageTreeBuilder::AddText(NodeKind kind, QByteArrayView text) {
    const qsizetype before = used_;
    const quint32 begin = AddCharacters(text);
    pieces_.push_back({.First = begin,
                       .Count = static_cast<quint32>(used_ - before),
                       .What = kind == NodeKind::Text ? Kind::Text : Kind::Comment});
}

void PageTreeBuilder::AddRun(int run) {
    pieces_.push_back({.First = static_cast<quint32>(run), .What = Kind::Run});
}

int PageTreeBuilder::EndRun() {
    runEnds_.push_back(pieces_.size());
    return static_cast<int>(runEnds_.size()) - 1;
}

qint64 PageTreeBuilder::Size() const {
    return static_cast<qint64>(pieces_.size() * (sizeof(Piece) + sizeof(PageTree::Node)) +
                               attributes_.size() * (sizeof(Attribute) + sizeof(PageAttribute))) +
           used_ * 2;
}

quint32 PageTreeBuilder::AttributeName(QByteArrayView prefix, QByteArrayView name) {
    QByteArray key = prefix.isEmpty() ? QByteArray::fromRawData(name.data(), name.size())
                                      : prefix.toByteArray() + ':' + name.toByteArray();
    const auto known = attributeNames_.constFind(key);
    if (known != attributeNames_.cend())
        return *known;
    key.detach();
    const auto number = static_cast<quint32>(tree_.attributeNames_.size());
    tree_.attributeNames_.push_back(QString::fromUtf8(key));
    attributeNames_.insert(QByteArray(key.constData(), key.size()), number);
    lastElementWith_.push_back(0);
    return number;
}

quint32 PageTreeBuilder::AddCharacters(QByteArrayView utf8) {
    const qsizetype begin = used_;
    if (tree_.characters_.size() - used_ < utf8.size())
        tree_.characters_.resize(std::max(tree_.characters_.size() / 2 * 3, used_ + utf8.size() + 64));
    char16_t* to = reinterpret_cast<char16_t*>(tree_.characters_.data()) + used_;
    const auto* from = reinterpret_cast<const uchar*>(utf8.data());
    const uchar* const end = from + utf8.size();
    while (from != end) {
        // ASCII, eight characters at a time.
        quint64 eight = 0;
        while (end - from >= 8 && (std::memcpy(&eight, from, 8), (eight & 0x8080808080808080U) == 0)) {
            for (int i = 0; i < 8; ++i)
                to[i] = from[i];
            from += 8;
            to += 8;
        }
        if (from == end)
            break;
        const uchar byte = *from++;
        if (byte < 0x80) {
            *to++ = byte;
            continue;
        }
        // What a parser gives comes from a QString, so it is whole.
        const int more = byte < 0xe0 ? 1 : byte < 0xf0 ? 2 : 3;
        char32_t code = byte & (0x3fU >> more);
        for (int i = 0; i < more && from != end; ++i)
            code = code << 6 | (*from++ & 0x3fU);
        if (code >= 0x10000) {
            *to++ = QChar::highSurrogate(code);
            *to++ = QChar::lowSurrogate(code);
        } else {
            *to++ = static_cast<char16_t>(code);
        }
    }
    used_ = to - reinterpret_cast<const char16_t*>(tree_.characters_.constData());
    return static_cast<quint32>(begin);
}

void PageTreeBuilder::Finish(int run) {
    tree_.characters_.truncate(used_);
    FinishAttributes();
    size_t count = 0;
    for (const Piece& piece : pieces_)
        count += piece.What < Kind::Close ? 1 : 0;
    tree_.nodes_.reserve(count);
    struct Place {
        size_t Next;
        size_t End;
    };
    const auto placeOf = [this](size_t number) {
        return Place{number == 0 ? 0 : runEnds_[number - 1], runEnds_[number]};
    };
    std::vector<Place> within{placeOf(static_cast<size_t>(run))};
    while (!within.empty()) {
        Place& place = within.back();
        if (place.Next == place.End) {
            within.pop_back();
            continue;
        }
        const Piece& piece = pieces_[place.Next++];
        if (piece.What == Kind::Run)
            within.push_back(placeOf(piece.First));
        else
            this->Place(piece);
    }
}

void PageTreeBuilder::Place(const Piece& piece) {
    if (piece.What == Kind::Close) {
        tree_.nodes_[static_cast<size_t>(open_.back())].End = tree_.Count();
        open_.pop_back();
        return;
    }
    const NodeIndex index = tree_.Count();
    tree_.nodes_.push_back({.Parent = open_.empty() ? noNode : open_.back(),
                            .End = index + 1,
                            .First = piece.First,
                            .Count = piece.Count,
                            .NameId = piece.NameId,
                            .Kind = piece.What == Kind::Element ? NodeKind::Element
                                    : piece.What == Kind::Text  ? NodeKind::Text
                                                                : NodeKind::Comment,
                            .Space = piece.Space});
    if (piece.What == Kind::Element) {
        open_.push_back(index);
        NoteLandmarks(index);
    }
}

void PageTreeBuilder::FinishAttributes() {
    const QStringView all(tree_.characters_);
    tree_.attributes_.reserve(attributes_.size());
    for (const Attribute& attribute : attributes_)
        tree_.attributes_.push_back(
            {tree_.attributeNames_[attribute.Name], all.sliced(attribute.Value, attribute.ValueLength)});
    attributes_ = {};
}

void PageTreeBuilder::NoteLandmarks(NodeIndex index) {
    if (open_.size() == 1)
        tree_.root_ = index;
    else if (open_.size() == 2 && tree_.head_ == noNode && tree_.Is(index, u"head"))
        tree_.head_ = index;
    else if (open_.size() == 2 && tree_.body_ == noNode && (tree_.Is(index, u"body") || tree_.Is(index, u"frameset")))
        tree_.body_ = index;
}

} // namespace Brindle
