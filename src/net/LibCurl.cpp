#include "net/LibCurl.h"

namespace Brindle {

#ifdef BRINDLE_CURL_LIBRARY
BRINDLE_LOADED_LIBRARY(CurlFunctions, LibCurl, CURL_FUNCTIONS, BRINDLE_CURL_LIBRARY)
#else
BRINDLE_LINKED_LIBRARY(CurlFunctions, LibCurl, CURL_FUNCTIONS)
#endif

} // namespace Brindle
