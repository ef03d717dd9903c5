#pragma once

// What the header of this version lacks of the system's interfaces for screen readers.

#include_next <uiautomation.h>

enum CaretPosition
{
    CaretPosition_Unknown = 0,
    CaretPosition_EndOfLine = 1,
    CaretPosition_BeginningOfLine = 2
};

#ifndef UIA_IsReadOnlyAttributeId
 #define UIA_IsReadOnlyAttributeId 40015
 #define UIA_CaretPositionAttributeId 40038
#endif

#ifndef __ISelectionProvider2_INTERFACE_DEFINED__
 #define __ISelectionProvider2_INTERFACE_DEFINED__
struct ISelectionProvider2 : ISelectionProvider
{
    virtual HRESULT STDMETHODCALLTYPE get_FirstSelectedItem (IRawElementProviderSimple** item) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LastSelectedItem (IRawElementProviderSimple** item) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CurrentSelectedItem (IRawElementProviderSimple** item) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ItemCount (int* count) = 0;
};

__CRT_UUID_DECL (ISelectionProvider2, 0x14f68475, 0xee1c, 0x44f6, 0xa8, 0x69, 0xd2, 0x39, 0x38, 0x1f, 0x0f, 0xe7)
#endif
