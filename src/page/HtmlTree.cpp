#include "page/HtmlTree.h"

#include "core/Errors.h"

#include <algorithm>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace Brindle {

using namespace Qt::StringLiterals;

// The parser's memory. It is given back all at once, so a deep tree is not taken down level by level, and the parser
// can be left in the middle of a page that needs more memory or time than a page may have.
class HtmlTree::Arena {
public:
    Arena(const PageBounds& bounds, qsizetype pageSize)
        : memoryLeft_(bounds.ParserMemory),
          deadline_(std::clock() +
                    static_cast<std::clock_t>((bounds.ParserMs + bounds.ParserMsPerMiB * (pageSize >> 20)) *
                                              CLOCKS_PER_SEC / 1000)) {}
    ~Arena() {
        for (void* block : blocks_)
            std::free(block);
    }
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    // The parser's tree; null when the parser was left, then `Overrun` tells why.
    GumboOutput* Parse(const char* text, size_t length) {
        GumboOptions options = kGumboDefaultOptions;
        options.allocator = &Allocate;
        options.deallocator = &Release;
        options.userdata = this;
        options.max_errors = 0; // otherwise every error of the page is kept, with its stack of open elements
        // Between here and the jump lie frames of C alone.
        if (setjmp(leave_) != 0)
            return nullptr;
        return gumbo_parse_with_options(&options, text, length);
    }

    const char* Overrun() const { return overrun_; }

private:
    static constexpr size_t alignment = alignof(void*); // the parser's values are pointers and what is smaller
    static constexpr size_t blockSize = size_t{1} << 20;

    static void* Allocate(void* self, size_t size) { return static_cast<Arena*>(self)->Take(size); }
    // Only what was taken last can be taken again, which is what becomes of most of the parser's short-lived texts.
    static void Release(void* self, void* memory) {
        auto* const arena = static_cast<Arena*>(self);
        if (memory && memory == arena->last_) {
            arena->next_ = arena->last_;
            arena->last_ = nullptr;
        }
    }

    void* Take(size_t size) {
        if ((++calls_ & 0xfff) == 0 && std::clock() > deadline_)
            Leave("takes too long to parse");
        size = (std::max<size_t>(size, 1) + alignment - 1) & ~(alignment - 1);
        if (size > static_cast<size_t>(end_ - next_))
            AddBlock(std::max(size, blockSize));
        last_ = next_;
        next_ += size;
        return last_;
    }

    void AddBlock(size_t size) {
        memoryLeft_ -= static_cast<qint64>(size);
        void* const block = memoryLeft_ < 0 ? nullptr : std::malloc(size);
        if (!block)
            Leave("takes too much memory to parse");
        blocks_.push_back(block);
        next_ = static_cast<char*>(block);
        end_ = next_ + size;
    }

    [[noreturn]] void Leave(const char* why) {
        overrun_ = why;
        std::longjmp(leave_, 1);
    }

    std::vector<void*> blocks_;
    char* next_ = nullptr;
    char* end_ = nullptr;
    char* last_ = nullptr;
    qint64 memoryLeft_;
    std::clock_t deadline_;
    quint32 calls_ = 0;
    const char* overrun_ = nullptr;
    std::jmp_buf leave_;
};

HtmlTree::HtmlTree(const QString& html, const PageBounds& bounds)
    : source_(Prepare(html, bounds)), arena_(std::make_unique<Arena>(bounds, source_.Utf8.size())) {
    const GumboOutput* const output = arena_->Parse(source_.Utf8.constData(), static_cast<size_t>(source_.Utf8.size()));
    if (!output)
        throw Failure(u"the page "_s + QLatin1String(arena_->Overrun()) + u", so it was not read"_s);
    root_ = output->root;
}

HtmlTree::~HtmlTree() = default;

const GumboNode* HtmlTree::Body() const {
    const GumboVector* const children = ChildrenOf(root_);
    for (unsigned i = 0; children && i < children->length; ++i) {
        const auto* const child = static_cast<const GumboNode*>(children->data[i]);
        if (IsHtmlElement(child, GUMBO_TAG_BODY) || IsHtmlElement(child, GUMBO_TAG_FRAMESET))
            return child;
    }
    return nullptr;
}

const GumboVector* ChildrenOf(const GumboNode* node) {
    return node && (node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE) ? &node->v.element.children
                                                                                           : nullptr;
}

bool IsText(const GumboNode* node) {
    return node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE || node->type == GUMBO_NODE_CDATA;
}

bool IsHtmlElement(const GumboNode* node, GumboTag tag) {
    return ChildrenOf(node) && node->v.element.tag == tag && node->v.element.tag_namespace == GUMBO_NAMESPACE_HTML;
}

QByteArray NameOf(const GumboElement& element) {
    if (element.attributes.length > 0) {
        const auto* const first = static_cast<const GumboAttribute*>(element.attributes.data[0]);
        if (std::strcmp(first->name, aliasAttribute) == 0)
            return first->value;
    }
    GumboStringPiece original = element.original_tag;
    // A "</>" is no tag, but the parser counts it to the next one.
    while (original.length > 3 && std::memcmp(original.data, "</>", 3) == 0) {
        original.data += 3;
        original.length -= 3;
    }
    const bool known = element.tag != GUMBO_TAG_UNKNOWN;
    if (original.data && (!known || element.tag_namespace == GUMBO_NAMESPACE_SVG))
        gumbo_tag_from_original_text(&original);
    if (element.tag_namespace == GUMBO_NAMESPACE_SVG && original.data)
        if (const char* const svg = gumbo_normalize_svg_tagname(&original))
            return svg;
    if (known)
        return gumbo_normalized_tagname(element.tag);
    QByteArray name(original.data, static_cast<qsizetype>(original.length));
    // ASCII letters only, and no zero byte ever gets out of the parser.
    for (char& c : name)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return name.replace(QByteArrayView("\0", 1), QByteArrayView("\xef\xbf\xbd"));
}

const char* AttributeOf(const GumboElement& element, const char* name) {
    const GumboAttribute* const attribute = gumbo_get_attribute(&element.attributes, name);
    return attribute && attribute->attr_namespace == GUMBO_ATTR_NAMESPACE_NONE ? attribute->value : nullptr;
}

} // namespace Brindle
