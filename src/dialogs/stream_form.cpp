#include "dialogs/stream_form.h"

#include <cstdint>

#include "config/text_codec.h"
#include "dialogs/form_numbers.h"

namespace vx::dialogs {

using config::utf8ToCp1251;

namespace {

constexpr std::size_t textLimit = 999;
constexpr int shownDigits = 5;

void setRange(IntegerField& field, std::int64_t minimum, std::int64_t maximum)
{
    field.minimum = minimum;
    field.maximum = maximum;
}

// The tests compare as unsigned numbers: -1 from a failed read is far above
// every upper bound.
std::uint32_t asUnsigned(std::int32_t value)
{
    return static_cast<std::uint32_t>(value);
}

} // namespace

std::string trimLink(const std::string& text)
{
    const char* const blanks = " \t\n\r\f\v";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

StreamForm::StreamForm(config::CameraCommon& record, bool isNew, Messages& messages)
    : Form(messages), record_(record), isNew_(isNew)
{
    videoPath.maxLength = textLimit;
    videoName.maxLength = textLimit;
    setRange(width, 0, 20000);
    setRange(height, 0, 20000);
    setRange(secondsToReconnect, 1, 1000);
    setRange(attempts, 0, 1000);
    setRange(videoChunk, 1, 500);
    setRange(widthWrite, 0, 20000);
    setRange(heightWrite, 0, 20000);
    reconnect.onClick = [this] { enableFields(); };
    writeVideo.onClick = [this] { enableFields(); };
    writeOnlyNumObj.onClick = [this] { enableFields(); };
    // The two decoders exclude each other: a click on one clears the other,
    // whichever state the clicked one takes.
    decodeNvidia.onClick = [this] { decodeDirectX.checked = false; };
    decodeDirectX.onClick = [this] { decodeNvidia.checked = false; };
    findCamera.caption = utf8ToCp1251("Найти ONVIF камеру");
    findCamera.onPress = [this] {
        if (!findLink)
            return;
        if (const std::optional<std::string> link = findLink())
            videoPath.set(*link);
    };
}

std::string StreamForm::title() const
{
    return utf8ToCp1251(isNew_ ? "Добавить видеопоток" : "Редактирование видеопотока");
}

void StreamForm::fill()
{
    const config::CameraCommon& c = record_;
    videoPath.set(c.videoPath);
    videoName.set(c.videoName);
    width.set(c.width);
    height.set(c.height);
    fps.setSignificant(c.fps, shownDigits);
    reconnect.checked = c.reconnect;
    secondsToReconnect.set(c.secondsToReconnect);
    attempts.set(c.attempts);
    unShowVideo.checked = c.unShowVideo;
    showConsole.checked = c.showConsole;
    aspect.checked = c.aspect;
    onlyVideoStream.checked = c.onlyVideoStream;
    writeVideo.checked = c.writeVideo;
    writeOnlyNumObj.checked = c.writeOnlyNumObj;
    writeTransport.checked = c.writeTransport;
    writePerson.checked = c.writePerson;
    videoChunk.set(c.videoChunk);
    widthWrite.set(c.widthWrite);
    heightWrite.set(c.heightWrite);
    tcp.checked = c.tcp;
    // A stored pair shows both decoders set until one is clicked.
    decodeNvidia.checked = c.decodeNvidia;
    decodeDirectX.checked = c.decodeDirectX;
    enableFields();
}

config::CameraCommon StreamForm::readBack() const
{
    config::CameraCommon c;
    c.videoPath = trimLink(videoPath.text);
    c.videoName = videoName.text;
    c.width = readInt32(width, -1);
    c.height = readInt32(height, -1);
    c.fps = static_cast<float>(readReal(fps, -1.0));
    c.reconnect = reconnect.checked;
    c.secondsToReconnect = readInt32(secondsToReconnect, -1);
    c.attempts = readInt32(attempts, -1);
    c.unShowVideo = unShowVideo.checked;
    c.showConsole = showConsole.checked;
    c.aspect = aspect.checked;
    c.onlyVideoStream = onlyVideoStream.checked;
    c.writeVideo = writeVideo.checked;
    c.writeOnlyNumObj = writeOnlyNumObj.checked;
    c.writeTransport = writeTransport.checked;
    c.writePerson = writePerson.checked;
    c.videoChunk = readInt32(videoChunk, -1);
    c.widthWrite = readInt32(widthWrite, -1);
    c.heightWrite = readInt32(heightWrite, -1);
    c.tcp = tcp.checked;
    c.decodeNvidia = decodeNvidia.checked;
    c.decodeDirectX = decodeDirectX.checked;
    // display and drawOptionsButtons are not on the form: a fresh record's 0.
    return c;
}

bool StreamForm::accept()
{
    config::CameraCommon c = readBack();
    FormChecks checks;
    // The message asks for more than three characters; three pass.
    checks.test(c.videoPath.size() >= 3,
                utf8ToCp1251("Не задан или задан неправильно видеопоток - нужно больше 3-х символов!"));
    checks.test(!(c.fps < 0.0f || c.fps > 1000.0f),
                utf8ToCp1251("Неправильно заданно значение FPS - можно в диапазоне от 0 до 1000!"));
    checks.test(asUnsigned(c.secondsToReconnect) >= 1 && asUnsigned(c.secondsToReconnect) <= 1000,
                utf8ToCp1251("Неправильное количество секунд до переподключения - можно в диапазоне от 1 и до 1000!"));
    checks.test(asUnsigned(c.width) <= 20000, utf8ToCp1251("Неправильно заданно значение ширины [0 - 20000]!"));
    checks.test(asUnsigned(c.height) <= 20000, utf8ToCp1251("Неправильно заданно значение высоты [0 - 20000]!"));
    checks.test(asUnsigned(c.attempts) <= 1000,
                utf8ToCp1251("Неправильно заданно количество попыток - можно в диапазоне от 0 до 1000!"));
    checks.test(asUnsigned(c.videoChunk) >= 1 && asUnsigned(c.videoChunk) <= 500,
                utf8ToCp1251("Размер чанка может быть в пределах [1,500]!"));
    checks.test(asUnsigned(c.widthWrite) <= 20000,
                utf8ToCp1251("Неправильно заданно значение ширины записи [0 - 20000]!"));
    checks.test(asUnsigned(c.heightWrite) <= 20000,
                utf8ToCp1251("Неправильно заданно значение высоты записи [0 - 20000]!"));
    // The stream's file writes the link with its backslashes doubled and the
    // name as it stands.
    checks.pathText(c.videoPath, "Ссылка на видеопоток");
    checks.plainText(c.videoName, "Название потока");
    if (!checks.report(messages()))
        return false;
    c.xWindow = record_.xWindow;
    c.yWindow = record_.yWindow;
    c.widthWindow = record_.widthWindow;
    c.heightWindow = record_.heightWindow;
    c.ID = record_.ID;
    c.autoRun = record_.autoRun;
    record_ = c;
    return true;
}

void StreamForm::enableFields()
{
    secondsToReconnect.enabled = reconnect.checked;
    attempts.enabled = reconnect.checked;
    const bool recording = writeVideo.checked;
    writeOnlyNumObj.enabled = recording;
    videoChunk.enabled = recording;
    widthWrite.enabled = recording;
    heightWrite.enabled = recording;
    writeTransport.enabled = recording && writeOnlyNumObj.checked;
    writePerson.enabled = recording && writeOnlyNumObj.checked;
}

} // namespace vx::dialogs
