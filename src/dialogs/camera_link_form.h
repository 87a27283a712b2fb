#pragma once
// "Получение rtsp ссылки камеры": the found cameras, login and password.
// "OK" disables both buttons, starts the bar and hands the request to the
// link call's thread; the call's end either closes the dialog (OK with the
// link, or Cancel) or shows the ONVIF failure and gives the buttons back, so
// that other credentials or another camera can be tried.
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/camera_discovery.h"
#include "dialogs/camera_scan_form.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

// What the thread is given: the selected item's text (none without a
// selection), and login and password as typed.
struct LinkRequest {
    std::optional<std::string> item;
    std::string login;
    std::string password;
};

struct LinkOutcome {
    DiscoveryEnd end = DiscoveryEnd::cancel;   // open: the call failed, the dialog stays
    std::string link;
};

// The thread's part, steps 1 to 6 of the link call.
LinkOutcome runLinkCall(const LinkRequest& request, const ToolCall& call, const std::atomic<bool>& cancelled);

class CameraLinkForm : public Form {
public:
    CameraLinkForm(std::vector<FoundCamera> cameras, Messages& messages);

    void fill() override;
    // "OK": never closes by itself; starts the call through `startCall`.
    bool accept() override;
    // "Отмена": true (and the flag raised) while the buttons are enabled.
    bool cancel();
    // The call's end, on the interface thread.
    void finish(const LinkOutcome& outcome);

    std::shared_ptr<std::atomic<bool>> cancelFlag() const { return cancelled_; }
    DiscoveryEnd end() const { return end_; }
    const std::string& link() const { return link_; }

    ListField cameras;        // a list box: "ip name", the first selected
    LabelField prompt;        // "Введите логин и пароль от камеры (по умолчанию admin admin):"
    TextField login;          // up to 255, "admin"
    TextField password;       // masked, up to 255, "admin"
    bool barMoving = false;
    ButtonField ok;
    ButtonField cancelButton;
    std::function<void(const LinkRequest&)> startCall;

private:
    std::vector<FoundCamera> found_;
    std::shared_ptr<std::atomic<bool>> cancelled_;
    DiscoveryEnd end_ = DiscoveryEnd::open;
    std::string link_;
};

} // namespace vx::dialogs
