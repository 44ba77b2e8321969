#include "browser/ie/IeError.h"

#include <ole2.h>
#include <urlmon.h>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

struct Meaning {
    HRESULT Error;
    QStringView Text;
};

// The system has texts for these only in files that are not always there.
constexpr Meaning meanings[] = {
    {INET_E_INVALID_URL, u"the address is not valid"},
    {INET_E_NO_SESSION, u"no connection could be opened"},
    {INET_E_CANNOT_CONNECT, u"the server does not answer"},
    {INET_E_RESOURCE_NOT_FOUND, u"the server or the proxy was not found"},
    {INET_E_OBJECT_NOT_FOUND, u"the page was not found"},
    {INET_E_DATA_NOT_AVAILABLE, u"the connection ended before the page came"},
    {INET_E_DOWNLOAD_FAILURE, u"the transfer failed"},
    {INET_E_AUTHENTICATION_REQUIRED, u"the server or the proxy wants a user name and a password"},
    {INET_E_NO_VALID_MEDIA, u"what came is no page"},
    {INET_E_CONNECTION_TIMEOUT, u"the time for an answer is over"},
    {INET_E_INVALID_REQUEST, u"the request is not valid"},
    {INET_E_UNKNOWN_PROTOCOL, u"the protocol of the address is not known"},
    {INET_E_SECURITY_PROBLEM, u"the connection is not secure"},
    {INET_E_CANNOT_LOAD_DATA, u"the page could not be loaded"},
    {INET_E_INVALID_CERTIFICATE, u"the server's certificate is not valid"},
    {INET_E_REDIRECT_FAILED, u"the redirect could not be followed"},
    {INET_E_REDIRECT_TO_DIR, u"the redirect leads to a folder"},
};

} // namespace

QString LoaderErrorText(qint32 error) {
    for (const Meaning& meaning : meanings)
        if (meaning.Error == error)
            return meaning.Text.toString();
    return u"the page could not be loaded (error %1)"_s.arg(static_cast<quint32>(error), 8, 16, QLatin1Char('0'));
}

} // namespace Brindle
