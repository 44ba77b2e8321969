#pragma once

namespace Brindle {

/// How a browser writes a document out as text.
enum class MarkupForm {
    Standard, ///< the serialisation of today's engines: lower-case tags, quoted attribute values
    Legacy    ///< that of old engines: upper-case tags, bare values of HTML's own attributes
};

} // namespace Brindle
