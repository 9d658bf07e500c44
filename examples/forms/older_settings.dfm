object SettingsForm: TSettingsForm
  Caption = 'Réglages °'
  Opacity = 0.75
  Threshold = 1E-5
  Ratio = 1
  Saved = 40273.5473370486
  object TTimer
    Interval = 250
  end
end
