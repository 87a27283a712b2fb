#pragma once
// The three HTTP clients to the services, one mutex each. A mutex is held
// across a whole request, so requests to one service go one at a time and a
// client can't be replaced during a request.
//
// The pointers are read atomically: the workers look at a client's validity
// before they take its mutex, which must not meet a replacement half done.
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace httplib {
class Client;
}

namespace vx::supervision {

struct ServiceClients {
    std::atomic<std::shared_ptr<httplib::Client>> clientRecognition;
    std::mutex clientRecognitionMutex;
    std::atomic<std::shared_ptr<httplib::Client>> clientControl;
    std::mutex clientControlMutex;
    std::atomic<std::shared_ptr<httplib::Client>> clientMes;   // shared: a worker may finish on an old one
    std::mutex clientMesMutex;
};

// A client for host "localhost" on `port`: connection, read and write
// timeouts of 1 s, keep-alive on.
std::shared_ptr<httplib::Client> makeServiceClient(std::int32_t port);

// Each takes its mutex and replaces the client by a new one on `port`. The
// first two destroy the old client first; the third publishes the new one and
// drops only its own reference to the old. An exception is written to
// standard error as "Ошибка initHTTPClient: <text>" (…Direct, …Mes) and the
// old state stays as far as it got.
void initHTTPClient(ServiceClients& clients, std::int32_t port);
void initHTTPClientDirect(ServiceClients& clients, std::int32_t port);
void initHTTPClientMes(ServiceClients& clients, std::int32_t port);

// The teardown's part: the recognition and control clients are stopped and
// destroyed, the messenger client only stopped (it is shared).
void stopClients(ServiceClients& clients);

} // namespace vx::supervision
