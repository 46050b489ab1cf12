#include "linux/display/WaylandOutputs.h"

#include "xdg-output-client.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <list>
#include <memory>
#include <wayland-client.h>

namespace nimbarrow {

namespace {

struct Asked {
    wl_output* output = nullptr;
    zxdg_output_v1* logical = nullptr;
    WaylandOutput answer;
    bool isTurned = false;
};

struct Question {
    // What is in it keeps its place.
    std::list<Asked> outputs;
    zxdg_output_manager_v1* manager = nullptr;
};

Asked& asked(void* data)
{
    return *static_cast<Asked*>(data);
}

constexpr wl_output_listener outputListener {
    [](void* data, wl_output*, int32_t, int32_t, int32_t, int32_t, int32_t, const char*, const char*,
        int32_t transform) { asked(data).isTurned = transform % 2 == 1; },
    [](void* data, wl_output*, uint32_t flags, int32_t width, int32_t height, int32_t) {
        if (flags & WL_OUTPUT_MODE_CURRENT)
            asked(data).answer.mode = { width, height };
    },
    [](void*, wl_output*) {},
    [](void*, wl_output*, int32_t) {},
    [](void* data, wl_output*, const char* name) { asked(data).answer.name = QString::fromUtf8(name); },
    [](void*, wl_output*, const char*) {},
};

constexpr zxdg_output_v1_listener logicalListener {
    [](void* data, zxdg_output_v1*, int32_t x, int32_t y) {
        asked(data).answer.place.moveTopLeft({ x, y });
    },
    [](void* data, zxdg_output_v1*, int32_t width, int32_t height) {
        asked(data).answer.place.setSize({ width, height });
    },
    [](void*, zxdg_output_v1*) {},
    [](void* data, zxdg_output_v1*, const char* name) { asked(data).answer.name = QString::fromUtf8(name); },
    [](void*, zxdg_output_v1*, const char*) {},
};

constexpr wl_registry_listener registryListener {
    [](void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version) {
        auto& question = *static_cast<Question*>(data);
        if (interface == QByteArrayView(wl_output_interface.name)) {
            auto& output = question.outputs.emplace_back();
            output.output = static_cast<wl_output*>(
                wl_registry_bind(registry, name, &wl_output_interface, std::min(version, 4U)));
            wl_output_add_listener(output.output, &outputListener, &output);
        } else if (interface == QByteArrayView(zxdg_output_manager_v1_interface.name)) {
            question.manager = static_cast<zxdg_output_manager_v1*>(
                wl_registry_bind(registry, name, &zxdg_output_manager_v1_interface, std::min(version, 3U)));
        }
    },
    [](void*, wl_registry*, uint32_t) {},
};

} // namespace

// The connection takes along what was asked on it.
QList<WaylandOutput> waylandOutputs()
{
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display)
        return {};
    Question question;
    auto* const registry = wl_display_get_registry(display.get());
    wl_registry_add_listener(registry, &registryListener, &question);
    wl_display_roundtrip(display.get());
    for (auto& output : question.outputs) {
        if (!question.manager)
            break;
        output.logical = zxdg_output_manager_v1_get_xdg_output(question.manager, output.output);
        zxdg_output_v1_add_listener(output.logical, &logicalListener, &output);
    }
    wl_display_roundtrip(display.get());
    QList<WaylandOutput> result;
    for (const auto& output : question.outputs) {
        result << output.answer;
        if (output.isTurned)
            result.last().mode.transpose();
        if (output.logical)
            zxdg_output_v1_destroy(output.logical);
        wl_output_destroy(output.output);
    }
    if (question.manager)
        zxdg_output_manager_v1_destroy(question.manager);
    wl_registry_destroy(registry);
    return result;
}

std::optional<WaylandOutput> outputOf(
    const QList<WaylandOutput>& outputs, const QString& name, const QRect& place)
{
    const auto is = [&](auto property, const auto& value) -> std::optional<WaylandOutput> {
        const auto found = std::ranges::find(outputs, value, property);
        return found == outputs.end() ? std::nullopt : std::optional(*found);
    };
    if (const auto same = is(&WaylandOutput::name, name))
        return same;
    if (const auto same = is(&WaylandOutput::place, place))
        return same;
    return outputs.size() == 1 ? std::optional(outputs.first()) : std::nullopt;
}

ScreenModeOf waylandScreenMode()
{
    struct Known {
        QList<QRect> screens;
        QList<WaylandOutput> outputs;
    };
    return [known = std::make_shared<Known>()](const QScreen& screen) -> ScreenMode {
        QList<QRect> screens;
        for (const auto all = QGuiApplication::screens(); const auto* one : all)
            screens << one->geometry();
        if (screens != known->screens)
            *known = { screens, waylandOutputs() };
        const auto size = (screen.size() * screen.devicePixelRatio());
        // An X server's screens keep their places when the program scales itself.
        const auto output = outputOf(known->outputs, screen.name(), { screen.geometry().topLeft(), size });
        return output && !output->mode.isEmpty() ? ScreenMode { output->name, output->mode }
                                                 : ScreenMode { screen.name(), size };
    };
}

} // namespace nimbarrow
