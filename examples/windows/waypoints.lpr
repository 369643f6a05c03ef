{ Prints the waypoints of a Garmin receiver from Lazarus or Delphi, without an import of the types.

    fpc -Mdelphi waypoints.lpr          (Win64 or Win32: the library of that kind is used)

  In Delphi: Component, Import ActiveX Control, "Marlune GPS transfer control" makes a component for
  the tool palette instead, with the events as properties. }
program waypoints;

{$APPTYPE CONSOLE}

uses
  Windows, ActiveX, ComObj, Variants, SysUtils;

const
  EventsId: TGUID = '{08E4871B-4381-4E05-A960-71F37C3DF0A7}';
  WayptDataEvent = 8;

type
  { Receives the events. They come as calls by number, their parameters in reverse. }
  TEvents = class(TInterfacedObject, IUnknown, IDispatch)
  public
    function QueryInterface({$IFDEF FPC}constref{$ELSE}const{$ENDIF} IID: TGUID; out Obj): HResult;
      stdcall;
    function GetTypeInfoCount(out Count: Integer): HResult; stdcall;
    function GetTypeInfo(Index, LocaleID: Integer; out TypeInfo): HResult; stdcall;
    function GetIDsOfNames(const IID: TGUID; Names: Pointer; NameCount, LocaleID: Integer;
      DispIDs: Pointer): HResult; stdcall;
    function Invoke(DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word; var Params;
      VarResult, ExcepInfo, ArgErr: Pointer): HResult; stdcall;
  end;

function TEvents.QueryInterface({$IFDEF FPC}constref{$ELSE}const{$ENDIF} IID: TGUID;
  out Obj): HResult;
begin
  if IsEqualGUID(IID, EventsId) then
  begin
    IDispatch(Obj) := Self;
    Result := S_OK;
  end
  else
    Result := inherited QueryInterface(IID, Obj);
end;

function TEvents.GetTypeInfoCount(out Count: Integer): HResult; stdcall;
begin
  Count := 0;
  Result := S_OK;
end;

function TEvents.GetTypeInfo(Index, LocaleID: Integer; out TypeInfo): HResult; stdcall;
begin
  Result := E_NOTIMPL;
end;

function TEvents.GetIDsOfNames(const IID: TGUID; Names: Pointer; NameCount, LocaleID: Integer;
  DispIDs: Pointer): HResult; stdcall;
begin
  Result := E_NOTIMPL;
end;

function TEvents.Invoke(DispID: Integer; const IID: TGUID; LocaleID: Integer; Flags: Word;
  var Params; VarResult, ExcepInfo, ArgErr: Pointer): HResult; stdcall;
var
  Given: TDispParams absolute Params;
  Message: TMsg;
begin
  if DispID = WayptDataEvent then
  begin
    WriteLn(WideString(Given.rgvarg^[1].bstrVal));  { of three: the second }
    { The control reads the line without a look at the thread's messages. On a form, call
      Application.ProcessMessages, and disable what would start a second transfer. }
    while PeekMessage(Message, 0, 0, 0, PM_REMOVE) do
      DispatchMessage(Message);
  end;
  Result := S_OK;
end;

var
  Gps: OleVariant;
  Events: IUnknown;
  Cookie: {$IFDEF FPC}DWORD{$ELSE}Longint{$ENDIF};

begin
  OleInitialize(nil);
  Gps := CreateOleObject('Marlune.GpsControl');
  Events := TEvents.Create;
  InterfaceConnect(Gps, EventsId, Events, Cookie);
  Gps.SetGpsMark := 'GRM';
  Gps.setNumPort := 3;
  if Gps.gpsConnect then
  begin
    Gps.getWaypts;
    Gps.gpsDisconnect;
  end;
  InterfaceDisconnect(Gps, EventsId, Cookie);
  Gps := Unassigned;
end.
