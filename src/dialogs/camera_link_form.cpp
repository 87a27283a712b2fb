#include "dialogs/camera_link_form.h"

#include "config/text_codec.h"

namespace vx::dialogs {

LinkOutcome runLinkCall(const LinkRequest& request, const ToolCall& call, const std::atomic<bool>& cancelled)
{
    if (!request.item || request.item->empty())
        return {DiscoveryEnd::cancel, {}};
    const std::size_t blank = request.item->find(' ');
    if (blank == std::string::npos)
        return {DiscoveryEnd::cancel, {}};
    const std::string ip = request.item->substr(0, blank);
    const ToolOutput run = call(linkCommandLine(ip, request.login, request.password));
    if (!run.started || cancelled)
        return {DiscoveryEnd::cancel, {}};
    if (run.text.empty())
        return {DiscoveryEnd::open, {}};
    const std::string link = parseRTSP(run.text);
    if (link.empty() || link == "error")
        return {DiscoveryEnd::open, {}};
    return {DiscoveryEnd::ok, insertCredentials(link, request.login, request.password)};
}

CameraLinkForm::CameraLinkForm(std::vector<FoundCamera> cameras, Messages& messages)
    : Form(messages), found_(std::move(cameras)), cancelled_(std::make_shared<std::atomic<bool>>(false))
{
    login.maxLength = 255;
    password.maxLength = 255;
    prompt.text = config::utf8ToCp1251("Введите логин и пароль от камеры (по умолчанию admin admin):");
    ok.caption = "OK";
    cancelButton.caption = config::utf8ToCp1251("Отмена");
}

void CameraLinkForm::fill()
{
    cameras.clear();
    for (const FoundCamera& camera : found_)
        cameras.items.push_back(cameraItemText(camera));
    cameras.selected = cameras.items.empty() ? -1 : 0;
    login.set("admin");
    password.set("admin");
    barMoving = false;
    ok.enabled = true;
    cancelButton.enabled = true;
}

bool CameraLinkForm::accept()
{
    if (!ok.enabled || end_ != DiscoveryEnd::open)
        return false;
    ok.enabled = false;
    cancelButton.enabled = false;
    barMoving = true;
    LinkRequest request;
    if (cameras.selected >= 0 && cameras.selected < static_cast<std::int32_t>(cameras.items.size()))
        request.item = cameras.items[static_cast<std::size_t>(cameras.selected)];
    request.login = login.text;
    request.password = password.text;
    if (startCall)
        startCall(request);
    return false;
}

bool CameraLinkForm::cancel()
{
    if (!cancelButton.enabled || end_ != DiscoveryEnd::open)
        return false;
    *cancelled_ = true;
    end_ = DiscoveryEnd::cancel;
    return true;
}

void CameraLinkForm::finish(const LinkOutcome& outcome)
{
    if (end_ != DiscoveryEnd::open)
        return;
    if (outcome.end == DiscoveryEnd::open) {
        barMoving = false;
        showError(messages(), noLinkText());
        ok.enabled = true;
        cancelButton.enabled = true;
        return;
    }
    end_ = outcome.end;
    link_ = outcome.link;
}

} // namespace vx::dialogs
