// Some platforms' own headers define macros of these names. Between this header and MacroNamesEnd.h they are
// out of the way, so that the names mean the same in every translation unit. Included as often as needed.

#pragma push_macro("FindWindow")
#undef FindWindow
#pragma push_macro("GetFullPathName")
#undef GetFullPathName
#pragma push_macro("GetWindowText")
#undef GetWindowText
#pragma push_macro("LoadString")
#undef LoadString
#pragma push_macro("MessageBox")
#undef MessageBox
#pragma push_macro("PostMessage")
#undef PostMessage
#pragma push_macro("SendMessage")
#undef SendMessage
#pragma push_macro("SendNotifyMessage")
#undef SendNotifyMessage
#pragma push_macro("SetWindowText")
#undef SetWindowText
#pragma push_macro("WM_APP")
#undef WM_APP
#pragma push_macro("WM_TIMER")
#undef WM_TIMER
