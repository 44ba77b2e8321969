#include "page/HtmlParser.h"

#include "core/Errors.h"
#include "core/LoadedLibrary.h"
#include "page/PagePieces.h"
#include "page/PageTreeBuilder.h"
#include "toolkit/Ascii.h"
#include "toolkit/Marker.h"

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <ctime>
#include <deque>
#include <memory>
#include <myhtml/myhtml.h>
#include <new>
#include <utility>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

#define MYHTML_FUNCTIONS(FUNCTION)                                                                                     \
    FUNCTION(myhtml_, callback_before_token_done_set)                                                                  \
    FUNCTION(myhtml_, callback_tree_node_insert_set)                                                                   \
    FUNCTION(myhtml_, create)                                                                                          \
    FUNCTION(myhtml_, destroy)                                                                                         \
    FUNCTION(myhtml_, encoding_set)                                                                                    \
    FUNCTION(myhtml_, init)                                                                                            \
    FUNCTION(myhtml_, parse_chunk)                                                                                     \
    FUNCTION(myhtml_, parse_chunk_end)                                                                                 \
    FUNCTION(myhtml_, tag_name_by_id)                                                                                  \
    FUNCTION(myhtml_, tree_create)                                                                                     \
    FUNCTION(myhtml_, tree_current_node)                                                                               \
    FUNCTION(myhtml_, tree_destroy)                                                                                    \
    FUNCTION(myhtml_, tree_init)                                                                                       \
    FUNCTION(myhtml_, tree_is_html_integration_point)                                                                  \
    FUNCTION(myhtml_, tree_is_mathml_integration_point)                                                                \
    FUNCTION(myhtml_, tree_node_remove)                                                                                \
    FUNCTION(myhtml_, tree_open_elements_pop)                                                                          \
    FUNCTION(, mcobject_async_free)                                                                                    \
    FUNCTION(, mchar_async_cache_clean)
BRINDLE_FUNCTION_TABLE(MyHtmlFunctions, MYHTML_FUNCTIONS);
#ifdef BRINDLE_MODEST_LIBRARY
BRINDLE_LOADED_LIBRARY(MyHtmlFunctions, MyHtml, MYHTML_FUNCTIONS, BRINDLE_MODEST_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(MyHtmlFunctions, MyHtml, MYHTML_FUNCTIONS)
#endif

constexpr quint32 callsBetweenClockReadings = 1024;

// Elements of SVG that are not written in lower case (HTML, section 13.2.6.5).
QByteArrayView SvgName(QByteArrayView name) {
    static constexpr QByteArrayView names[] = {"altGlyph",
                                               "altGlyphDef",
                                               "altGlyphItem",
                                               "animateColor",
                                               "animateMotion",
                                               "animateTransform",
                                               "clipPath",
                                               "feBlend",
                                               "feColorMatrix",
                                               "feComponentTransfer",
                                               "feComposite",
                                               "feConvolveMatrix",
                                               "feDiffuseLighting",
                                               "feDisplacementMap",
                                               "feDistantLight",
                                               "feDropShadow",
                                               "feFlood",
                                               "feFuncA",
                                               "feFuncB",
                                               "feFuncG",
                                               "feFuncR",
                                               "feGaussianBlur",
                                               "feImage",
                                               "feMerge",
                                               "feMergeNode",
                                               "feMorphology",
                                               "feOffset",
                                               "fePointLight",
                                               "feSpecularLighting",
                                               "feSpotLight",
                                               "feTile",
                                               "feTurbulence",
                                               "foreignObject",
                                               "glyphRef",
                                               "linearGradient",
                                               "radialGradient",
                                               "textPath"};
    for (const QByteArrayView written : names)
        if (written.compare(name, Qt::CaseInsensitive) == 0)
            return written;
    return name;
}

// SVG attributes to which the parser gives a case that later editions of the standard no longer give.
bool IsLowerCasedSince(QByteArrayView name) {
    return name == "contentScriptType" || name == "contentStyleType" || name == "externalResourcesRequired" ||
           name == "filterRes";
}

QByteArrayView ViewOf(const mycore_string_t& text) {
    return text.data ? QByteArrayView(text.data, static_cast<qsizetype>(text.length))
                     : QByteArrayView("", qsizetype(0));
}

bool IsText(const myhtml_tree_node_t* node) {
    return node->tag_id == MyHTML_TAG__TEXT;
}

bool IsRawTextTag(myhtml_tag_id_t tag) {
    return tag == MyHTML_TAG_NOSCRIPT || tag == MyHTML_TAG_STYLE || tag == MyHTML_TAG_SCRIPT || tag == MyHTML_TAG_XMP ||
           tag == MyHTML_TAG_IFRAME || tag == MyHTML_TAG_NOEMBED || tag == MyHTML_TAG_NOFRAMES;
}

// The parser gets the page in pieces. Behind each, what is finished goes into the tree and the parser's memory for it
// is used again: it stays small and in the processor's caches.
class Parsing {
public:
    Parsing(const PageBounds& bounds, PageTreeBuilder& builder, qsizetype pageSize)
        : bounds_(bounds),
          builder_(builder),
          deadline_(std::clock() +
                    static_cast<std::clock_t>((bounds.ParserMs + bounds.ParserMsPerMiB * (pageSize >> 20)) *
                                              CLOCKS_PER_SEC / 1000)),
          parser_(MyHtml().create()),
          tree_(nullptr) {
        if (!parser_ || MyHtml().init(parser_, MyHTML_OPTIONS_PARSE_MODE_SINGLE, 1, 0) != MyHTML_STATUS_OK)
            throw std::bad_alloc();
        tree_ = MyHtml().tree_create();
        if (!tree_ || MyHtml().tree_init(tree_, parser_) != MyHTML_STATUS_OK)
            throw std::bad_alloc();
        tree_->flags = static_cast<myhtml_tree_flags>(tree_->flags | MyHTML_TREE_FLAGS_SCRIPT);
        MyHtml().encoding_set(tree_, MyENCODING_UTF_8);
        MyHtml().callback_before_token_done_set(tree_, &OnToken, this);
        MyHtml().callback_tree_node_insert_set(tree_, &OnInsert, this);
    }
    ~Parsing() {
        if (tree_)
            MyHtml().tree_destroy(tree_);
        if (parser_)
            MyHtml().destroy(parser_);
    }
    Parsing(const Parsing&) = delete;
    Parsing& operator=(const Parsing&) = delete;

    void Feed(const QByteArray& piece) {
        Parse(piece);
        HandOverFinished();
        ForgetFed();
    }

    // Ends the page; the number of the run that is its html element with all within it.
    int Finish() {
        // A comment of which the page has the beginning alone.
        if (tree_->state == MyHTML_TOKENIZER_STATE_COMMENT_START)
            Parse("-->");
        else if (tree_->state == MyHTML_TOKENIZER_STATE_COMMENT_START_DASH)
            Parse("->");
        Run([](Parsing& self) { MyHtml().parse_chunk_end(self.tree_); });
        if (tree_->node_html)
            HandOver(tree_->node_html);
        return builder_.EndRun();
    }

    // Whether what was fed ends in the middle of a tag.
    bool IsWithinTag() {
        const myhtml_tokenizer_state state = tree_->state;
        const bool within =
            state == MyHTML_TOKENIZER_STATE_TAG_NAME || (state >= MyHTML_TOKENIZER_STATE_BEFORE_ATTRIBUTE_NAME &&
                                                         state <= MyHTML_TOKENIZER_STATE_SELF_CLOSING_START_TAG);
        if (within)
            Run([](Parsing& self) { self.CheckAttributes(self.tree_->current_token_node); });
        return within;
    }
    // Whether the next piece is neither within a tag or comment nor within a raw text, which the parser wants whole.
    bool IsBetweenTags() const {
        const myhtml_tree_list_t& open = *tree_->open_elements;
        // Formatting elements may stand open within it again.
        const bool plain = std::any_of(open.list, open.list + open.length, [](const myhtml_tree_node_t* node) {
            return node->tag_id == MyHTML_TAG_PLAINTEXT;
        });
        return tree_->state == MyHTML_TOKENIZER_STATE_DATA && !plain;
    }
    // How many bytes of what was fed stand before the tag that is being read.
    qsizetype TagBegin() const {
        const size_t name = tree_->current_token_node->raw_begin;
        return static_cast<qsizetype>(name) - (name > 1 && StandsAt(name - 1, '/') ? 2 : 1);
    }

private:
    void Parse(const QByteArray& piece) {
        fed_.push_back(piece);
        Run([](Parsing& self) {
            const QByteArray& bytes = self.fed_.back();
            MyHtml().parse_chunk(self.tree_, bytes.constData(), static_cast<size_t>(bytes.size()));
        });
    }

    // Calls the parser. Between here and the jump lie frames of C alone.
    void Run(void (*call)(Parsing&)) {
        if (setjmp(leave_) == 0)
            call(*this);
        else
            throw Failure(u"the page "_s + Reason() + u", so it was not read"_s);
    }

    enum class Overrun { Attributes, Depth, Memory, Time };

    [[noreturn]] void Leave(Overrun overrun) {
        overrun_ = overrun;
        std::longjmp(leave_, 1);
    }

    QString Reason() const {
        switch (overrun_) {
        case Overrun::Attributes:
            return u"has a tag with more than %1 attributes"_s.arg(bounds_.Attributes);
        case Overrun::Depth:
            return u"has more than %1 elements nested in each other"_s.arg(bounds_.Depth);
        case Overrun::Memory:
            return u"takes too much memory to parse"_s;
        case Overrun::Time:
            break;
        }
        return u"takes too long to parse"_s;
    }

    static void* OnToken(myhtml_tree_t*, myhtml_token_node_t* token, void* self) {
        static_cast<Parsing*>(self)->CheckToken(token);
        return self;
    }
    static void OnInsert(myhtml_tree_t*, myhtml_tree_node_t* node, void* self) {
        static_cast<Parsing*>(self)->CheckNode(node);
    }

    void CheckToken(myhtml_token_node_t* token) {
        // An end tag is in no tree, once the next token comes; but "</br>" becomes an element.
        if (endTag_)
            MyHtml().mcobject_async_free(tree_->token->nodes_obj, endTag_);
        const bool ends = (token->type & MyHTML_TOKEN_TYPE_CLOSE) != 0 && token->tag_id != MyHTML_TAG_BR;
        endTag_ = ends && !token->attr_first ? token : nullptr;
        if (token->tag_id == MyHTML_TAG__TEXT)
            MendText(token);
        else
            MendTag(token);
        CheckAttributes(token);
        CheckClock();
    }

    void CheckAttributes(const myhtml_token_node_t* token) {
        int count = 0;
        for (const myhtml_token_attr_t* attribute = token->attr_first; attribute; attribute = attribute->next)
            ++count;
        if (count > bounds_.Attributes)
            Leave(Overrun::Attributes);
    }

    // References are none in raw text, also where something looked like its end, or where the page ends in it.
    void MendText(myhtml_token_node_t* token) const {
        const int withReferences = MyHTML_TOKEN_TYPE_DATA | MyHTML_TOKEN_TYPE_RCDATA;
        const myhtml_tree_node_t* const current =
            (token->type & withReferences) != 0 ? MyHtml().tree_current_node(tree_) : nullptr;
        if ((token->type & MyHTML_TOKEN_TYPE_CDATA) != 0 ||
            (current && current->ns == MyHTML_NAMESPACE_HTML && IsRawTextTag(current->tag_id)))
            SetType(token, withReferences | MyHTML_TOKEN_TYPE_CDATA, MyHTML_TOKEN_TYPE_RAWTEXT);
    }

    // What the standard says today of elements within pictures and formulas, and of an old name for pictures.
    void MendTag(myhtml_token_node_t* token) const {
        if ((token->type & MyHTML_TOKEN_TYPE_CLOSE) != 0) {
            if (token->tag_id == MyHTML_TAG_P || token->tag_id == MyHTML_TAG_BR)
                while (IsInForeignContent())
                    MyHtml().tree_open_elements_pop(tree_);
            return;
        }
        if (token->tag_id == MyHTML_TAG_IMAGE && !IsInForeignContent())
            token->tag_id = MyHTML_TAG_IMG;
        if ((token->type & MyHTML_TOKEN_TYPE_CLOSE_SELF) != 0 && token->element_length > 2 &&
            !StandsAt(token->element_begin + token->element_length - 2, '/'))
            SetType(token, MyHTML_TOKEN_TYPE_CLOSE_SELF, 0);
    }

    static void SetType(myhtml_token_node_t* token, int without, int with) {
        token->type = static_cast<myhtml_token_type>((token->type & ~without) | with);
    }

    bool IsInForeignContent() const {
        myhtml_tree_node_t* const current =
            tree_->open_elements->length > 0 ? MyHtml().tree_current_node(tree_) : nullptr;
        return current && current->ns != MyHTML_NAMESPACE_HTML &&
               !MyHtml().tree_is_mathml_integration_point(tree_, current) &&
               !MyHtml().tree_is_html_integration_point(tree_, current);
    }

    bool StandsAt(size_t place, char c) const {
        const mycore_incoming_buffer_t* buffer = tree_->incoming_buf_first;
        while (buffer && buffer->offset + buffer->size <= place)
            buffer = buffer->next;
        return buffer && place >= buffer->offset && buffer->data[place - buffer->offset] == c;
    }

    void CheckNode(const myhtml_tree_node_t* node) {
        if (tree_->open_elements->length > static_cast<size_t>(bounds_.Depth))
            Leave(Overrun::Depth);
        size_t size = sizeof(myhtml_tree_node_t) + sizeof(myhtml_token_node_t);
        for (const myhtml_token_attr_t* attribute = node->token ? node->token->attr_first : nullptr; attribute;
             attribute = attribute->next)
            size += sizeof(myhtml_token_attr_t);
        inserted_ += static_cast<qint64>(size);
        if (inserted_ + builder_.Size() > bounds_.ParserMemory)
            Leave(Overrun::Memory);
        CheckClock();
    }

    void CheckClock() {
        if (++calls_ % callsBetweenClockReadings == 0 && std::clock() > deadline_)
            Leave(Overrun::Time);
    }

    // Lets go of what the parser will not read in again, and of left-over pieces of its memory, in which it would
    // search longer and longer.
    void ForgetFed() {
        const myhtml_token_node_t& token = *tree_->current_token_node;
        const size_t begin = std::min(token.raw_begin, token.element_begin);
        mycore_incoming_buffer_t*& first = tree_->incoming_buf_first;
        for (; first->next && first->next->offset <= begin; first = first->next)
            fed_.pop_front();
        for (size_t i = 0; i < tree_->mchar->nodes_length; ++i)
            MyHtml().mchar_async_cache_clean(&tree_->mchar->nodes[i].cache);
    }

    // Hands over what can no longer change: whatever is beside the elements that are open or can be opened again. In
    // its place a node without contents stays, which stands for all finished ones beside each other.
    void HandOverFinished() {
        ++round_;
        kept_.clear();
        for (const myhtml_tree_list_t* list : {tree_->open_elements, tree_->active_formatting})
            for (size_t i = 0; i < list->length; ++i)
                Keep(list->list[i]);
        for (myhtml_tree_node_t* node : {tree_->node_html, tree_->node_head, tree_->node_body, tree_->node_form})
            Keep(node);
        for (myhtml_tree_node_t* const parent : kept_)
            HandOverFinishedOf(parent);
        inserted_ = 0;
    }

    void* Mark() const { return reinterpret_cast<void*>(static_cast<uintptr_t>(round_)); }
    bool IsKept(const myhtml_tree_node_t* node) const { return node->data == Mark() && !IsRun(node); }

    void Keep(myhtml_tree_node_t* node) {
        for (; node && node->parent && node->data != Mark(); node = node->parent) {
            node->data = Mark();
            kept_.push_back(node);
        }
    }

    static bool IsRun(const myhtml_tree_node_t* node) { return node->tag_id == MyHTML_TAG__COMMENT && !node->token; }

    void HandOverFinishedOf(myhtml_tree_node_t* parent) {
        for (myhtml_tree_node_t* node = parent->child; node;) {
            if (IsToStay(node)) {
                node = node->next;
                continue;
            }
            myhtml_tree_node_t* const first = node;
            int count = 0;
            for (; node && !IsToStay(node); node = node->next)
                ++count;
            if (count > 1 || !IsRun(first))
                MakeRun(first, node);
        }
    }

    // Further text can be added to the text at an end.
    bool IsToStay(const myhtml_tree_node_t* node) const {
        return IsKept(node) || (IsText(node) && (!node->next || IsKept(node->next)));
    }

    void MakeRun(myhtml_tree_node_t* first, myhtml_tree_node_t* end) {
        for (myhtml_tree_node_t* node = first; node != end; node = node->next)
            HandOver(node);
        Empty(first);
        while (first->next != end) {
            myhtml_tree_node_t* const node = first->next;
            Empty(node);
            MyHtml().tree_node_remove(node);
            MyHtml().mcobject_async_free(tree_->tree_obj, node);
        }
        first->tag_id = MyHTML_TAG__COMMENT;
        first->ns = MyHTML_NAMESPACE_HTML;
        first->data = reinterpret_cast<void*>(static_cast<uintptr_t>(builder_.EndRun()));
    }

    // Gives back what is within a node. Its characters are not given back: the parser would search long for a place to
    // use them in again.
    void Empty(myhtml_tree_node_t* top) {
        while (myhtml_tree_node_t* node = top->child) {
            while (node->child)
                node = node->child;
            ReleaseToken(node);
            node->parent->child = node->next;
            MyHtml().mcobject_async_free(tree_->tree_obj, node);
        }
        top->last_child = nullptr;
        ReleaseToken(top);
    }

    void ReleaseToken(myhtml_tree_node_t* node) {
        myhtml_token_node_t* const token = std::exchange(node->token, nullptr);
        if (!token || token == tree_->current_token_node)
            return;
        for (myhtml_token_attr_t* attribute = token->attr_first; attribute;) {
            myhtml_token_attr_t* const next = attribute->next;
            MyHtml().mcobject_async_free(tree_->token->attr_obj, attribute);
            attribute = next;
        }
        MyHtml().mcobject_async_free(tree_->token->nodes_obj, token);
    }

    // A node and all within it.
    void HandOver(const myhtml_tree_node_t* top) {
        const myhtml_tree_node_t* node = top;
        for (;;) {
            if (Enter(node) && node->child) {
                node = node->child;
                continue;
            }
            while (node != top && !node->next) {
                Exit(node);
                node = node->parent;
            }
            Exit(node);
            if (node == top)
                return;
            node = node->next;
        }
    }

    bool IsElement(const myhtml_tree_node_t* node) const {
        return node->tag_id != MyHTML_TAG__TEXT && node->tag_id != MyHTML_TAG__COMMENT &&
               node->tag_id != MyHTML_TAG__UNDEF && node->tag_id != MyHTML_TAG__DOCTYPE;
    }

    bool Enter(const myhtml_tree_node_t* node) {
        if (IsElement(node)) {
            OpenElement(node);
            return true;
        }
        if (IsRun(node))
            builder_.AddRun(static_cast<int>(reinterpret_cast<uintptr_t>(node->data)));
        else if (IsText(node) && node->token && node->token->str.length > 0)
            builder_.AddText(NodeKind::Text, ViewOf(node->token->str));
        else if (node->tag_id == MyHTML_TAG__COMMENT)
            builder_.AddText(NodeKind::Comment, ViewOf(node->token->str));
        else if (node->tag_id == MyHTML_TAG__UNDEF) // a comment without characters at the end of the page
            builder_.AddText(NodeKind::Comment, {});
        return false;
    }

    void Exit(const myhtml_tree_node_t* node) {
        if (IsElement(node))
            builder_.CloseElement();
    }

    void OpenElement(const myhtml_tree_node_t* node) {
        const NodeSpace space = node->ns == MyHTML_NAMESPACE_SVG      ? NodeSpace::Svg
                                : node->ns == MyHTML_NAMESPACE_MATHML ? NodeSpace::MathMl
                                                                      : NodeSpace::Html;
        builder_.OpenElement(space, NameNumber(node, space));
        for (const myhtml_token_attr_t* attribute = node->token ? node->token->attr_first : nullptr; attribute;
             attribute = attribute->next)
            AddAttribute(*attribute, space);
    }

    void AddAttribute(const myhtml_token_attr_t& attribute, NodeSpace space) {
        const QByteArrayView name = ViewOf(attribute.key);
        const QByteArrayView value = ViewOf(attribute.value);
        const char* prefix = "";
        if (attribute.ns == MyHTML_NAMESPACE_XLINK)
            prefix = "xlink";
        else if (attribute.ns == MyHTML_NAMESPACE_XML)
            prefix = "xml";
        else if (attribute.ns == MyHTML_NAMESPACE_XMLNS && name != "xmlns")
            prefix = "xmlns";
        if (space == NodeSpace::Svg && IsLowerCasedSince(name))
            builder_.AddAttribute(prefix, name.toByteArray().toLower(), value);
        else
            builder_.AddAttribute(prefix, name, value);
    }

    QByteArrayView NameOf(const myhtml_tree_node_t* node) const {
        size_t length = 0;
        const char* const name = MyHtml().tag_name_by_id(tree_, node->tag_id, &length);
        return {name ? name : "", static_cast<qsizetype>(length)};
    }

    int NameNumber(const myhtml_tree_node_t* node, NodeSpace space) {
        const size_t place = node->tag_id * 3 + static_cast<size_t>(space);
        if (place >= nameNumbers_.size())
            nameNumbers_.resize(place + 64, -1);
        int& number = nameNumbers_[place];
        if (number < 0) {
            QByteArray name = NameOf(node).toByteArray();
            for (char& c : name)
                c = Ascii::Lower(c);
            number = builder_.NameNumber(space == NodeSpace::Svg ? SvgName(name) : QByteArrayView(name));
        }
        return number;
    }

    const PageBounds& bounds_;
    PageTreeBuilder& builder_;
    std::clock_t deadline_;
    myhtml_t* parser_;
    myhtml_tree_t* tree_;
    std::deque<QByteArray> fed_; // the parser reads in it until it has finished
    std::vector<int> nameNumbers_;
    std::vector<myhtml_tree_node_t*> kept_;
    quint32 round_ = 0;
    qint64 inserted_ = 0; // bytes, since what was finished was handed over
    quint32 calls_ = 0;
    myhtml_token_node_t* endTag_ = nullptr; // the last token, where it is one
    Overrun overrun_ = Overrun::Time;
    std::jmp_buf leave_;
};

enum class Outcome { Done, CutWrongly, EndsWithinMarkup, Truncated };

// Feeds a page in pieces; it is `Truncated` before a tag that it does not end.
Outcome Feed(QString& html, PagePieces pieces, Parsing& parsing) {
    for (qsizetype begin = 0;;) {
        const qsizetype end = pieces.EndOf(begin);
        parsing.Feed(EncodedPiece(QStringView(html).sliced(begin, end - begin)));
        const bool first = begin == 0;
        begin = end;
        if (parsing.IsBetweenTags()) {
            if (end == html.size())
                return Outcome::Done;
        } else if (end < html.size()) {
            return Outcome::CutWrongly;
        } else if (!first) {
            return Outcome::EndsWithinMarkup;
        } else {
            break;
        }
    }
    if (!parsing.IsWithinTag())
        return Outcome::Done;
    html.truncate(QString::fromUtf8(EncodedPiece(html).first(parsing.TagBegin())).size());
    return Outcome::Truncated;
}

} // namespace

void ParseHtml(QString html, const PageBounds& bounds, PageTree& tree) {
    if (html.size() > bounds.Size)
        throw Failure(u"the page has more than %1 characters, so it was not read"_s.arg(bounds.Size));
    if (html.contains(QChar(u'\0')))
        html = WithoutNuls(html);
    static constexpr Marker emptyEndTag = u"</>";
    if (emptyEndTag.FindExact(html, 0) >= 0)
        html = WithoutEmptyEndTags(html);
    auto cuts = PagePieces::Cuts::AtAnyTag;
    for (;;) {
        PageTreeBuilder builder(tree, html.size());
        auto parsing = std::make_unique<Parsing>(bounds, builder, html.size());
        const qsizetype size = html.size();
        const Outcome outcome = Feed(html, PagePieces(html, cuts, bounds.PieceSize), *parsing);
        if (outcome == Outcome::CutWrongly || outcome == Outcome::EndsWithinMarkup) {
            cuts = outcome == Outcome::CutWrongly && cuts == PagePieces::Cuts::AtAnyTag ? PagePieces::Cuts::AtTags
                                                                                        : PagePieces::Cuts::Nowhere;
            continue;
        }
        if (outcome == Outcome::Truncated && html.size() < size) // What is no tag is nothing at all.
            continue;
        const int page = parsing->Finish();
        // Neither is needed for what is still to be done, and both are large.
        parsing.reset();
        html.clear();
        return builder.Finish(page);
    }
}

} // namespace Brindle
