#pragma once
// "Настройка распознавания видеопотока <name>": the Recognition section of
// one stream. The method chosen decides which fields mean anything; the rest
// of the form follows it.
#include <string>

#include "config/camera_config.h"
#include "dialogs/form.h"
#include "dialogs/form_fields.h"

namespace vx::dialogs {

// What the form reads back: the section, and the one flag of the common part
// that the form shows.
struct RecognitionValues {
    config::CameraRecognition recognition;
    bool drawOptionsButtons = false;
};

class RecognitionForm : public Form {
public:
    // Edits `recognition` and the extended-settings flag of `common` in place.
    RecognitionForm(config::CameraRecognition& recognition, config::CameraCommon& common, Messages& messages);

    std::string title() const;

    void fill() override;
    // Over a fresh section: what isn't on the form comes back at a fresh
    // record's values.
    RecognitionValues readBack() const;
    bool accept() override;

    CheckField unShowResultVideo;
    CheckField debugModeRecog;
    CheckField drawOptionsButtons;
    ListField method;              // "Метод:"
    IntegerField delaySendSame;
    ListField trajTypeSpeed;       // "Тип последовательности:"
    IntegerField tLimitTime;
    IntegerField tLimitFrames;
    RealField minConf;
    CheckField square;             // the key `Square`
    RealField minSquare;
    RealField maxSquare;
    CheckField useZone;
    RealField x;
    RealField y;
    RealField width;
    RealField height;
    RealField linesY;
    RealField lineAlfa;
    RealField lineDist;
    CheckField invert;
    CheckField deleteBorderNumbers;
    CheckField deleteNumbersWidthoutTemplate;
    CheckField noDeleteWithChina;

private:
    // The one rule of method and trajectory type, and the three checks that
    // switch fields on and off.
    void enableByMethod();
    void enableByChecks();

    config::CameraRecognition& recognition_;
    config::CameraCommon& common_;
};

} // namespace vx::dialogs
