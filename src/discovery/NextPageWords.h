#pragma once

#include <QStringView>

namespace Brindle {

/// How much the text of a link says that it leads to the next page of a list.
enum class NextWord : quint8 {
    None,
    Weak,  ///< "more", "older": true of other links too
    Strong ///< "next page"
};

/// `words`: as `BareWords` gives them.
NextWord NextWordIn(QStringView words);

/// Whether the words name the next of something that is no page: an article, a month, a picture.
bool NamesOtherNext(QStringView words);

} // namespace Brindle
