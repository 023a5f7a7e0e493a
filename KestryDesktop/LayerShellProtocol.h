#pragma once

#include <cstdint>
#include <string>

#include <wayland-client-core.h>

namespace Kestry::LayerShellProtocol {

// The part of Wayland's layer-shell protocol that the panels use, up to version 4, as tables for
// the client library. A compositor that has it can show a surface in a layer above all windows, at
// an edge of the screen.

inline constexpr const char* shellName = "zwlr_layer_shell_v1";

/// The interface to bind.
[[nodiscard]] const wl_interface& shellInterface();

enum class Layer : std::uint32_t { background, bottom, top, overlay };

enum Anchor : std::uint32_t { anchorTop = 1, anchorBottom = 2, anchorLeft = 4, anchorRight = 8 };

/// `exclusive` takes the keyboard from all windows. `onDemand`, from version 4 on, lets the next
/// window that the user turns to have it.
enum class Keyboard : std::uint32_t { none, exclusive, onDemand };

inline constexpr std::uint32_t onDemandVersion = 4;

/// The events of a surface, in the order of the protocol.
struct SurfaceListener {
    void (*configure)(void* data, wl_proxy* surface, std::uint32_t serial, std::uint32_t width,
        std::uint32_t height);
    void (*closed)(void* data, wl_proxy* surface);
};

/// Puts a surface into a layer of an output; the compositor chooses the output when it is null.
[[nodiscard]] wl_proxy* layerSurface(
    wl_proxy* shell, wl_proxy* surface, wl_proxy* output, Layer layer, const std::string& name);
void listen(wl_proxy* layerSurface, const SurfaceListener& listener, void* data);
void setSize(wl_proxy* layerSurface, std::uint32_t width, std::uint32_t height);
void setAnchor(wl_proxy* layerSurface, std::uint32_t edges);
void setMargins(wl_proxy* layerSurface, std::int32_t top, std::int32_t left);
void setKeyboard(wl_proxy* layerSurface, Keyboard keyboard);
void acknowledge(wl_proxy* layerSurface, std::uint32_t serial);
void destroy(wl_proxy* layerSurface);
/// Applies a surface's pending state.
void commit(wl_proxy* surface);

} // namespace Kestry::LayerShellProtocol
