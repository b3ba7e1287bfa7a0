complete -c ulvak -f
complete -c ulvak -l dump -d 'Pencere açmadan tara, bulguları yazdır ve çık'
complete -c ulvak -l ai -d '--dump ile dil modeline sor'
complete -c ulvak -l autoscan -d 'Pencere açılınca taramayı başlat'
# One word: the program does not accept the level as a separate argument.
complete -c ulvak -a '--level={safe,regenerable,caution,unknown,keep}' -d 'Pencereyi bir düzeyin listesiyle aç'
complete -c ulvak -l select-first -d 'Tarama bitince ilk öğeyi seç'
complete -c ulvak -l reduced-motion -d 'Geçişler zaman almasın'
complete -c ulvak -s h -l help -d 'Yardımı göster'
complete -c ulvak -l version -d 'Sürümü göster'
