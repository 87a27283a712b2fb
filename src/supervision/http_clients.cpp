#include "supervision/http_clients.h"

#include <exception>
#include <iostream>

// httplib brings the platform's socket headers (AF_INET) and, on Windows,
// starts Winsock itself (a static WSAStartup in the header).
#include <httplib.h>

#include "config/text_codec.h"

namespace vx::supervision {

std::shared_ptr<httplib::Client> makeServiceClient(std::int32_t port)
{
    auto client = std::make_shared<httplib::Client>("localhost", static_cast<int>(port));
    // The services listen on 127.0.0.1; without this "localhost" may first
    // be tried as ::1, where nobody listens.
    client->set_address_family(AF_INET);
    client->set_connection_timeout(1, 0);
    client->set_read_timeout(1, 0);
    client->set_write_timeout(1, 0);
    client->set_keep_alive(true);
    return client;
}

namespace {

void reportFailure(const char* routine, const char* what)
{
    std::cerr << config::utf8ToCp1251("Ошибка ") << routine << ": " << what << std::endl;
}

} // namespace

void initHTTPClient(ServiceClients& clients, std::int32_t port)
{
    try {
        std::lock_guard<std::mutex> lock(clients.clientRecognitionMutex);
        clients.clientRecognition.store(nullptr);
        clients.clientRecognition.store(makeServiceClient(port));
    } catch (const std::exception& e) {
        reportFailure("initHTTPClient", e.what());
    }
}

void initHTTPClientDirect(ServiceClients& clients, std::int32_t port)
{
    try {
        std::lock_guard<std::mutex> lock(clients.clientControlMutex);
        clients.clientControl.store(nullptr);
        clients.clientControl.store(makeServiceClient(port));
    } catch (const std::exception& e) {
        reportFailure("initHTTPClientDirect", e.what());
    }
}

void initHTTPClientMes(ServiceClients& clients, std::int32_t port)
{
    try {
        std::shared_ptr<httplib::Client> client = makeServiceClient(port);
        std::lock_guard<std::mutex> lock(clients.clientMesMutex);
        clients.clientMes.store(std::move(client));
    } catch (const std::exception& e) {
        reportFailure("initHTTPClientMes", e.what());
    }
}

void stopClients(ServiceClients& clients)
{
    if (auto client = clients.clientRecognition.exchange(nullptr))
        client->stop();
    if (auto client = clients.clientControl.exchange(nullptr))
        client->stop();
    if (auto client = clients.clientMes.load())
        client->stop();
}

} // namespace vx::supervision
