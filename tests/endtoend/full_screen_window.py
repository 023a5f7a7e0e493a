"""A white full-screen window, as another program would have one. Ends when it is terminated."""

from Xlib import X, Xatom, display

screen = display.Display()
root = screen.screen().root
window = root.create_window(
    0, 0, 400, 300, 0, X.CopyFromParent, background_pixel=screen.screen().white_pixel)
window.set_wm_name("Presentation")
window.change_property(
    screen.intern_atom("_NET_WM_STATE"), Xatom.ATOM, 32,
    [screen.intern_atom("_NET_WM_STATE_FULLSCREEN")])
window.map()
while True:
    screen.next_event()
