#include "LayerShellProtocol.h"

#include <array>

#include <wayland-client-protocol.h>

namespace Kestry::LayerShellProtocol {
namespace {

constexpr std::uint32_t getLayerSurfaceRequest = 0;
constexpr std::uint32_t setSizeRequest = 0;
constexpr std::uint32_t setAnchorRequest = 1;
constexpr std::uint32_t setMarginRequest = 3;
constexpr std::uint32_t setKeyboardRequest = 4;
constexpr std::uint32_t acknowledgeRequest = 6;
constexpr std::uint32_t destroyRequest = 7;

// The types of those arguments that are objects. Most messages have none.
const std::array<const wl_interface*, 4> plainTypes{};

const wl_interface** types(const auto& list)
{
    return const_cast<const wl_interface**>(list.data());
}

const wl_interface& surfaceInterface()
{
    static const std::array requests{
        wl_message{"set_size", "uu", types(plainTypes)},
        wl_message{"set_anchor", "u", types(plainTypes)},
        wl_message{"set_exclusive_zone", "i", types(plainTypes)},
        wl_message{"set_margin", "iiii", types(plainTypes)},
        wl_message{"set_keyboard_interactivity", "u", types(plainTypes)},
        wl_message{"get_popup", "o", types(plainTypes)},
        wl_message{"ack_configure", "u", types(plainTypes)},
        wl_message{"destroy", "", types(plainTypes)},
        wl_message{"set_layer", "2u", types(plainTypes)},
    };
    static const std::array events{
        wl_message{"configure", "uuu", types(plainTypes)},
        wl_message{"closed", "", types(plainTypes)},
    };
    static const wl_interface surface{"zwlr_layer_surface_v1", 4, static_cast<int>(requests.size()),
        requests.data(), static_cast<int>(events.size()), events.data()};
    return surface;
}

template <class... Arguments>
void request(wl_proxy* proxy, std::uint32_t opcode, Arguments... arguments)
{
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

} // namespace

const wl_interface& shellInterface()
{
    static const std::array<const wl_interface*, 5> layerSurfaceTypes{
        &surfaceInterface(), &wl_surface_interface, &wl_output_interface, nullptr, nullptr};
    static const std::array requests{
        wl_message{"get_layer_surface", "no?ous", types(layerSurfaceTypes)},
        wl_message{"destroy", "3", types(plainTypes)},
    };
    static const wl_interface shell{
        shellName, 4, static_cast<int>(requests.size()), requests.data(), 0, nullptr};
    return shell;
}

wl_proxy* layerSurface(
    wl_proxy* shell, wl_proxy* surface, wl_proxy* output, Layer layer, const std::string& name)
{
    return wl_proxy_marshal_flags(shell, getLayerSurfaceRequest, &surfaceInterface(),
        wl_proxy_get_version(shell), 0, nullptr, surface, output, static_cast<std::uint32_t>(layer),
        name.c_str());
}

void listen(wl_proxy* layerSurface, const SurfaceListener& listener, void* data)
{
    auto* const handlers = const_cast<SurfaceListener*>(&listener);
    wl_proxy_add_listener(layerSurface, reinterpret_cast<void (**)()>(handlers), data);
}

void setSize(wl_proxy* layerSurface, std::uint32_t width, std::uint32_t height)
{
    request(layerSurface, setSizeRequest, width, height);
}

void setAnchor(wl_proxy* layerSurface, std::uint32_t edges)
{
    request(layerSurface, setAnchorRequest, edges);
}

void setMargins(wl_proxy* layerSurface, std::int32_t top, std::int32_t left)
{
    request(layerSurface, setMarginRequest, top, 0, 0, left);
}

void setKeyboard(wl_proxy* layerSurface, Keyboard keyboard)
{
    request(layerSurface, setKeyboardRequest, static_cast<std::uint32_t>(keyboard));
}

void acknowledge(wl_proxy* layerSurface, std::uint32_t serial)
{
    request(layerSurface, acknowledgeRequest, serial);
}

void destroy(wl_proxy* layerSurface)
{
    wl_proxy_marshal_flags(layerSurface, destroyRequest, nullptr,
        wl_proxy_get_version(layerSurface), WL_MARSHAL_FLAG_DESTROY);
}

void commit(wl_proxy* surface)
{
    wl_surface_commit(reinterpret_cast<wl_surface*>(surface));
}

} // namespace Kestry::LayerShellProtocol
