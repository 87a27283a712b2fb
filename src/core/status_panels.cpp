#include "core/status_panels.h"

#include "config/text_codec.h"
#include "maintenance/system_log.h"

namespace vx::core {

namespace {
std::string text(const char* utf8) { return config::utf8ToCp1251(utf8); }
}

std::string serviceStatusText(const ServiceStatus& status)
{
    const std::string stop = text("Стоп");
    const std::string ok = text("ОК");
    std::string out = text("Анализ:");
    out += status.fpsRecognition == -1 ? stop
                                       : std::to_string(status.fpsRecognition) + text(" кадров/сек");
    out += "\r\n" + text("Контроль:") + (status.restartControl == 10 ? ok : stop);
    out += "\r\n" + text("Управление:") + (status.statusControl != -1 ? ok : stop);
    out += "\r\n" + text("Мессендж:") + (status.statusMes != -1 ? ok : stop);
    return out;
}

std::string streamStatusText(const StreamCounts& counts)
{
    return text("Всего:") + std::to_string(counts.total) + "\r\n" + text("Запущенных:") +
           std::to_string(counts.running) + "\r\n" + text("Планированно:") +
           std::to_string(counts.planned);
}

StatusPanelTexts statusPanelTexts(AppState& state)
{
    ServiceStatus services;
    services.fpsRecognition = state.fpsRecognition;
    services.restartControl = state.restartControl;
    services.statusControl = state.statusControl;
    services.statusMes = state.statusMes;
    // A sample only of a known rate: -1 (no answer yet, or the service is
    // down) writes nothing.
    if (maintenance::LogBuffer* perf = maintenance::perfLog();
        perf && state.liveMainConfig.perfLog == 1 && services.fpsRecognition != -1)
        perf->writeLine(std::to_string(services.fpsRecognition));
    const StreamCounts counts{state.streams.countTotal(), state.streams.countRunning(),
                              state.streams.countPlanned()};
    return {serviceStatusText(services), streamStatusText(counts)};
}

} // namespace vx::core
