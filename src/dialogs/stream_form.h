#pragma once
// The stream dialog: the Common section of one stream - its source, frame,
// reconnection and recording. Titled "Добавить видеопоток" for a stream being
// added, "Редактирование видеопотока" otherwise.
#include <functional>
#include <optional>
#include <string>

#include "config/camera_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

class StreamForm : public Form {
public:
    // Edits `record` in place; `isNew` chooses the title.
    StreamForm(config::CameraCommon& record, bool isNew, Messages& messages);

    std::string title() const;

    void fill() override;
    // A fresh record from the fields, disabled ones too: an integer that
    // won't read gives -1, the frame rate -1.0; the link is trimmed.
    config::CameraCommon readBack() const;
    // The nine tests; on success the record takes the new values but keeps
    // its window rectangle, ID and autoRun.
    bool accept() override;

    TextField videoPath;
    TextField videoName;
    IntegerField width;
    IntegerField height;
    RealField fps;
    CheckField reconnect;
    IntegerField secondsToReconnect;
    IntegerField attempts;
    CheckField unShowVideo;
    CheckField showConsole;
    CheckField aspect;
    CheckField onlyVideoStream;
    CheckField writeVideo;
    CheckField writeOnlyNumObj;
    CheckField writeTransport;
    CheckField writePerson;
    IntegerField videoChunk;
    IntegerField widthWrite;
    IntegerField heightWrite;
    CheckField tcp;
    CheckField decodeNvidia;
    CheckField decodeDirectX;
    ButtonField findCamera;   // "Найти ONVIF камеру"

    // The camera discovery behind findCamera: the text for the link field,
    // or nothing when the field keeps its content. Unset, the button does
    // nothing.
    std::function<std::optional<std::string>()> findLink;

private:
    void enableFields();

    config::CameraCommon& record_;
    bool isNew_;
};

// The link as the form keeps it: blanks, tabs, line feeds, carriage
// returns, form feeds and vertical tabs cut at both ends.
std::string trimLink(const std::string& text);

} // namespace vx::dialogs
