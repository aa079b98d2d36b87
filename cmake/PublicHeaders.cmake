# The headers that are installed; all others are the library's own. A header that one of these includes belongs
# here as well.

# What hosts use.
set(KALVIO_CONTRACT_HEADERS
  adapters/FormatConverter.h
  adapters/FormatConverterSettings.h
  adapters/KEDAAdapter.h
  adapters/KEDAAdapterSettings.h
  adapters/KEDAHints.h
  adapters/KEDARegisters.h
  hardware/CalibrationTable.h
  hardware/CommandSet.h
  hardware/DSPMap.h
  hardware/Hardware.h
  hardware/HardwareAccessDlg.h
  hardware/KvNetFrame.h
  hardware/LevelConversions.h
  hardware/PreProcessorNotifications.h
  hardware/UsbTransport.h
  host/AnalyserSettings.h
  host/BaseDocument.h
  host/FftDetectors.h
  host/FftParameters.h
  host/Field.h
  host/FieldDetails.h
  host/FieldTable.h
  host/GeneratorSettings.h
  host/HostApplication.h
  host/HostTexts.h
  host/Measurement.h
  host/MeasurementHelpers.h
  host/Messengers.h
  host/PanelWindows.h
  host/PeripheralNetworkQueries.h
  host/ProgressWnd.h
  host/Quantities.h
  host/ResultCatalogue.h
  host/ResultIds.h
  host/SettingsData.h
  host/SettlingQueries.h
  host/Trees.h
  host/Units.h
  host/ViewUpdates.h
  host/Views.h
  platform/Archive.h
  platform/Automation.h
  platform/AutomationTable.h
  platform/Clock.h
  platform/ControlState.h
  platform/Controls.h
  platform/DebugFile.h
  platform/DeviceDriver.h
  platform/Dialog.h
  platform/Export.h
  platform/Files.h
  platform/Json.h
  platform/Registry.h
  platform/Sync.h
  platform/Text.h
  platform/Thread.h
  platform/UserInterface.h
  platform/Window.h
  preprocessor/PreProcessor.h
  preprocessor/RegulationDetails.h
  preprocessor/RegulationObserver.h
  preprocessor/RegulatorWatcher.h
  preprocessor/SettledResult.h
  preprocessor/SettlingWatch.h
  preprocessor/SettlingWatcher.h
  peripheral_network/FirmwareDownload.h
  peripheral_network/FirmwareFile.h
  peripheral_network/KvNetSettings.h
  peripheral_network/bus/KvNetErrors.h
  peripheral_network/bus/KvNetExchange.h
  peripheral_network/bus/KvNetHints.h
  peripheral_network/bus/KvNetStatus.h
  peripheral_network/bus/KvNetTrace.h
  peripheral_network/bus/PeripheralNetwork.h
  regulation/RegulationSettings.h
  regulation/RegulationStatusText.h
  settling/SettlingDetails.h
  switching/ChannelArray.h
  switching/ChannelArrayDevice.h
  switching/ChannelArrayList.h
  switching/ChannelDetails.h
  switching/IOSwitcher.h
  switching/IOSwitcherSettings.h
  switching/KvNetDevice.h
  switching/RelayFrames.h
  switching/Switcher.h
  switching/SwitcherSettings.h)

# What those are made of; nothing in them is exported for its own sake.
set(KALVIO_SUPPORTING_HEADERS
  hardware/DSPWord.h
  hardware/EResIndex.h
  hardware/ExchangeOutcome.h
  hardware/GeneratorDetails.h
  hardware/MemoryAccess.h
  hardware/SampleRate.h
  platform/MacroNamesBegin.h
  platform/MacroNamesEnd.h
  platform/ThreadAnnotations.h
  preprocessor/EResult.h
  preprocessor/SettlingFilter.h
  preprocessor/Watch.h
  regulation/RegulationFields.h
  regulation/RegulationTexts.h)

set(KALVIO_PUBLIC_HEADERS ${KALVIO_CONTRACT_HEADERS} ${KALVIO_SUPPORTING_HEADERS})

# The virtual unit, its faults and its log.
set(KALVIO_SIMULATOR_HEADERS
  simulator/Bytes.h
  simulator/DeviceUnderTest.h
  simulator/Faults.h
  simulator/Log.h
  simulator/Peripheral.h
  simulator/UnitFaults.h
  simulator/UnitMemories.h
  simulator/UnitOptions.h
  simulator/UnitPeripherals.h
  simulator/UnitRecords.h
  simulator/UnitSignals.h
  simulator/VirtualUnit.h
  simulator/peripherals/BusDevice.h
  simulator/peripherals/ControlPort.h
  simulator/peripherals/FirmwareReceiver.h
  simulator/peripherals/FirmwareStore.h
  simulator/peripherals/IoSwitcher.h
  simulator/peripherals/KedaAdapter.h
  simulator/peripherals/KedaClocks.h
  simulator/peripherals/KedaRegisters.h
  simulator/peripherals/Misbehaving.h
  simulator/peripherals/PeripheralList.h
  simulator/signals/SignalPath.h)

# The hand-driven clock and the scripted user interface.
set(KALVIO_TESTING_HEADERS
  testing/ManualClock.h
  testing/ScriptedUserInterface.h)

# Everything of a host program but its face.
set(KALVIO_REFERENCE_HOST_HEADERS
  reference_host/application/MainWindow.h
  reference_host/application/ReferenceHost.h
  reference_host/application/ReferenceHostOptions.h
  reference_host/measurement/GeneratorRecords.h
  reference_host/measurement/MeasurementEngine.h
  reference_host/measurement/ResultWords.h
  reference_host/measurement/SettlingRun.h
  reference_host/measurement/SourceGate.h
  reference_host/regulation/RegulationRun.h
  reference_host/regulation/RegulationSetup.h
  reference_host/results/OutcomeTexts.h
  reference_host/results/ResultCatalogue.h
  reference_host/script/ReferenceScriptHost.h
  reference_host/script/Script.h
  reference_host/script/ScriptHost.h
  reference_host/script/ScriptNames.h
  reference_host/script/ScriptRunner.h
  reference_host/script/ScriptTokens.h
  reference_host/unit/DeviceOption.h
  reference_host/unit/ImageFiles.h)

set(KALVIO_ALL_PUBLIC_HEADERS ${KALVIO_PUBLIC_HEADERS} ${KALVIO_SIMULATOR_HEADERS} ${KALVIO_TESTING_HEADERS}
  ${KALVIO_REFERENCE_HOST_HEADERS})
