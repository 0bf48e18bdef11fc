#pragma once

class QWidget;

/// Lets the mouse wheel change a combo box or a spin box only while that has the focus. Someone who
/// scrolls a form doesn't change a setting by passing over it; the wheel goes on to what lies
/// behind, such as a scroll area.
///
/// Covers the widget itself and all children that it has now. Call it again for what is made later;
/// a second call for the same widget changes nothing. The widgets take the focus by click and Tab,
/// no longer by the wheel.
void guardWheel(QWidget* form);
