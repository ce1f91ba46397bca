# The window systems, in the order in which the session is asked for them. Each is a folder
# of platform/window, a library platform_window_NAME and a function platform::NAMEKind(), in the
# library or, where that one is loaded on demand, in platform_window_NAME_kind.
set(BRIXTEL_WINDOW_SYSTEMS wayland x11)
