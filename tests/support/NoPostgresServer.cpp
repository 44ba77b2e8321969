// Where no server is started for tests: there is none installed, as far as they are concerned.
#include "PostgresServer.h"

namespace Brindle::Test {

PostgresServer::PostgresServer() : error_(QStringLiteral("no server is started on this system")) {}

PostgresServer::~PostgresServer() = default;

bool PostgresServer::Installed() {
    return false;
}

QString PostgresServer::Address() const {
    return {};
}

void PostgresServer::Start() {}

void PostgresServer::Stop() {}

void PostgresServer::Freeze() {}

void PostgresServer::Thaw() {}

} // namespace Brindle::Test
