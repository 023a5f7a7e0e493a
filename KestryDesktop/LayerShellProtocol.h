#pragma once

#include <cstdint>
#include <string>

#include <wayland-client-core.h>

namespace Kestry::LayerShellProtocol {

// The part of Wayland's layer-shell protocol that the panels use, up to version 4, as the tables
// that the client library wants. A compositor that offers it lets a surface stand in a layer
// above all windows, at an edge of the screen.

inline constexpr const char* shellName = "zwlr_layer_shell_v1";

/// What a compositor offers, for binding to it.
[[nodiscard]] const wl_interface& shellInterface();

enum class Layer : std::uint32_t { background, bottom, top, overlay };

enum Anchor : std::uint32_t { anchorTop = 1, anchorBottom = 2, anchorLeft = 4, anchorRight = 8 };

/// Exclusive takes the keyboard from all windows; on demand, from version 4 on, leaves it to the
/// next window that the user turns to.
enum class Keyboard : std::uint32_t { none, exclusive, onDemand };

inline constexpr std::uint32_t onDemandVersion = 4;

/// What the compositor tells of a surface, in the order of the protocol.
struct SurfaceListener {
    void (*configure)(void* data, wl_proxy* surface, std::uint32_t serial, std::uint32_t width,
        std::uint32_t height);
    void (*closed)(void* data, wl_proxy* surface);
};

/// A surface's place in a layer of an output; of the compositor's own choice where that is null.
[[nodiscard]] wl_proxy* layerSurface(
    wl_proxy* shell, wl_proxy* surface, wl_proxy* output, Layer layer, const std::string& name);
void listen(wl_proxy* layerSurface, const SurfaceListener& listener, void* data);
void setSize(wl_proxy* layerSurface, std::uint32_t width, std::uint32_t height);
void setAnchor(wl_proxy* layerSurface, std::uint32_t edges);
void setMargins(wl_proxy* layerSurface, std::int32_t top, std::int32_t left);
void setKeyboard(wl_proxy* layerSurface, Keyboard keyboard);
void acknowledge(wl_proxy* layerSurface, std::uint32_t serial);
void destroy(wl_proxy* layerSurface);
/// Makes a surface's pending state its state.
void commit(wl_proxy* surface);

} // namespace Kestry::LayerShellProtocol
