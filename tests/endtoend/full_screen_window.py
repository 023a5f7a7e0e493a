"""A white full-screen window, as another program would have one. Ends when it is terminated.

Prints each key that is typed into it, by the name of its symbol, and "click" for each click.
"""

from Xlib import X, XK, Xatom, display

screen = display.Display()
root = screen.screen().root
window = root.create_window(
    0, 0, 400, 300, 0, X.CopyFromParent, background_pixel=screen.screen().white_pixel,
    event_mask=X.KeyPressMask | X.ButtonPressMask)
window.set_wm_name("Presentation")
window.change_property(
    screen.intern_atom("_NET_WM_STATE"), Xatom.ATOM, 32,
    [screen.intern_atom("_NET_WM_STATE_FULLSCREEN")])
window.map()
names = {getattr(XK, name): name[3:] for name in dir(XK) if name.startswith("XK_")}
while True:
    event = screen.next_event()
    if event.type == X.KeyPress:
        print(names.get(screen.keycode_to_keysym(event.detail, 0)), flush=True)
    elif event.type == X.ButtonPress:
        print("click", flush=True)
