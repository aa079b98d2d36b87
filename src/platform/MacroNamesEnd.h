// Gives back what MacroNamesBegin.h took away.

#pragma pop_macro("FindWindow")
#pragma pop_macro("GetFullPathName")
#pragma pop_macro("GetWindowText")
#pragma pop_macro("LoadString")
#pragma pop_macro("MessageBox")
#pragma pop_macro("PostMessage")
#pragma pop_macro("SendMessage")
#pragma pop_macro("SendNotifyMessage")
#pragma pop_macro("SetWindowText")
#pragma pop_macro("WM_APP")
#pragma pop_macro("WM_TIMER")
