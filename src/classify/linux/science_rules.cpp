#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// One row per line, so that rows can be compared.
// clang-format off
constexpr Row rows[] = {
    // Programs for circuits.
    {.path = "~/{intelFPGA,intelFPGA_lite,intelFPGA_pro,altera,altera_lite,altera_pro,altera_standard}/[0-9]*", .level = SafetyLevel::caution, .title = "Quartus Prime {name}", .explanation = "Kurulu bir Quartus sürümü. Kullanmıyorsan `uninstall` klasöründeki araçla kaldırabilirsin; silersen yeniden indirip kurman gerekir. Projelerini buraya kaydettiysen onlar da gider."},
    // Conda and its kin. A root has condabin, an environment only conda-meta: the root's rows come first.
    {.path = "~/{miniconda,miniconda2,miniconda3,anaconda,anaconda2,anaconda3,miniforge,miniforge3,miniforge-pypy3,mambaforge,mambaforge-pypy3,micromamba,.miniconda3,.anaconda3,.miniforge3,.mambaforge}", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Conda · {name}", .explanation = "Conda'nın kendisi ve taban ortamının paketleri. Silersen conda'yı yeniden kurman gerekir.", .processes = {"conda", "mamba", "micromamba"}},
    {.name = "{miniconda*,anaconda*,miniforge*,mambaforge*,conda,.conda,micromamba}", .holds = {"condabin"}, .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Conda · {name}", .explanation = "Conda'nın kendisi ve taban ortamının paketleri. Silersen conda'yı yeniden kurman gerekir.", .processes = {"conda", "mamba", "micromamba"}},
    {.name = "*", .holds = {"condabin"}, .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Conda · {name}", .explanation = "Conda'nın kendisi ve taban ortamının paketleri. Silersen conda'yı yeniden kurman gerekir.", .processes = {"conda", "mamba", "micromamba"}},
    {.path = "~/{miniconda,miniconda2,miniconda3,anaconda,anaconda2,anaconda3,miniforge,miniforge3,miniforge-pypy3,mambaforge,mambaforge-pypy3,micromamba,.miniconda3,.anaconda3,.miniforge3,.mambaforge}/pkgs", .level = SafetyLevel::regenerable, .title = "Conda paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse gerektiğinde tekrar indirilir. İpucu: `conda clean --all`.", .processes = {"conda", "mamba", "micromamba"}},
    {.path = "~/{miniconda,miniconda2,miniconda3,anaconda,anaconda2,anaconda3,miniforge,miniforge3,miniforge-pypy3,mambaforge,mambaforge-pypy3,micromamba,.miniconda3,.anaconda3,.miniforge3,.mambaforge}/envs", .container = ScanContext::normal},
    {.path = "~/{miniconda,miniconda2,miniconda3,anaconda,anaconda2,anaconda3,miniforge,miniforge3,miniforge-pypy3,mambaforge,mambaforge-pypy3,micromamba,.miniconda3,.anaconda3,.miniforge3,.mambaforge}/envs/*", .level = SafetyLevel::caution, .title = "Conda ortamı: {name}", .explanation = "Bir conda ortamı ve paketleri. Listesini önce `conda env export` ile al; kaldırmak için `conda env remove -n`, geri getirmek için `conda env create -f`.", .processes = {"conda", "mamba", "micromamba"}},
    {.name = "pkgs", .siblings = {"conda-meta", "condabin"}, .level = SafetyLevel::regenerable, .title = "Conda paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse gerektiğinde tekrar indirilir. İpucu: `conda clean --all`.", .processes = {"conda", "mamba", "micromamba"}},
    {.name = "pkgs", .siblings = {"envs"}, .holds = {"urls.txt", "*.conda"}, .level = SafetyLevel::regenerable, .title = "Conda paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse gerektiğinde tekrar indirilir. İpucu: `conda clean --all`.", .processes = {"conda", "mamba", "micromamba"}},
    {.name = "*", .holds = {"conda-meta"}, .level = SafetyLevel::caution, .title = "Conda ortamı: {name}", .explanation = "Bir conda ortamı ve paketleri. Listesini önce `conda env export` ile al; kaldırmak için `conda env remove`, geri getirmek için `conda env create -f`.", .processes = {"conda", "mamba", "micromamba"}},
    {.path = "~/.conda", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Conda ayarları", .explanation = "Conda'nın ayarları ve ortam listesi."},
    {.path = "~/.conda/pkgs", .level = SafetyLevel::regenerable, .title = "Conda paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse gerektiğinde tekrar indirilir. İpucu: `conda clean --all`.", .processes = {"conda", "mamba"}},
    {.path = "~/.conda/envs", .container = ScanContext::normal},
    {.path = "~/.conda/envs/*", .level = SafetyLevel::caution, .title = "Conda ortamı: {name}", .explanation = "Bir conda ortamı ve paketleri. Listesini önce `conda env export` ile al; kaldırmak için `conda env remove -n`, geri getirmek için `conda env create -f`.", .processes = {"conda", "mamba"}},
    {.path = "$cache/conda", .level = SafetyLevel::regenerable, .title = "Conda önbelleği", .explanation = "Paket listelerinin kopyaları. Silinirse tekrar indirilir."},
    {.path = "$data/mamba", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Mamba · {name}", .explanation = "Mamba'nın taban ortamı. Silersen yeniden kurman gerekir.", .processes = {"mamba", "micromamba"}},
    {.path = "$data/mamba/pkgs", .level = SafetyLevel::regenerable, .title = "Mamba paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse gerektiğinde tekrar indirilir. İpucu: `micromamba clean --all`.", .processes = {"mamba", "micromamba"}},
    {.path = "$data/mamba/envs", .container = ScanContext::normal},
    {.path = "$data/mamba/envs/*", .level = SafetyLevel::caution, .title = "Mamba ortamı: {name}", .explanation = "Bir ortam ve paketleri. Listesini önce `micromamba env export` ile al; silersen yeniden kurman gerekir.", .processes = {"mamba", "micromamba"}},
    {.path = "$cache/rattler", .level = SafetyLevel::regenerable, .title = "pixi paket önbelleği", .explanation = "İndirilmiş paketler; ortamlarla paylaşıldığı için gerçek kazanç daha az olabilir. Silinirse tekrar indirilir. İpucu: `pixi clean cache`.", .processes = {"pixi"}},
    {.path = "~/.pixi", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "pixi araçları: {name}", .explanation = "pixi'nin kendisi ve `pixi global install` ile kurduğun araçlar. Silersen yeniden kurman gerekir.", .processes = {"pixi"}},

    // Notebooks.
    {.path = "~/.ipython", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "IPython verisi", .explanation = "Komut geçmişin ve profillerin."},
    {.path = "~/.jupyter", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Jupyter ayarları", .explanation = "Jupyter ayarların, parolan ve çalışma alanların.", .quitApps = {"JupyterLab"}},
    {.path = "$data/jupyter", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Jupyter dosyaları: {name}", .explanation = "Kurulu çekirdekler ve eklentiler; imzaladığın defterlerin listesi de burada. Silersen yeniden kurman gerekir.", .quitApps = {"JupyterLab"}, .processes = {"jupyter*"}},
    {.path = "$data/jupyter/runtime", .level = SafetyLevel::safe, .title = "Jupyter bağlantı dosyaları", .explanation = "Çalışan çekirdeklerin geçici dosyaları. Açık defter yoksa silmek güvenli.", .quitApps = {"JupyterLab"}, .processes = {"jupyter*"}},
    {.name = ".ipynb_checkpoints", .siblings = {"*.ipynb"}, .level = SafetyLevel::caution, .title = "{parent} · defter ara kayıtları", .explanation = "Defterlerin (notebook) son kaydedilen halleri. Silersen eski hale dönemezsin; bir sonraki kayıtta yeniden oluşur.", .quitApps = {"JupyterLab"}},
    {.path = "$config/jupyterlab-desktop", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "JupyterLab verisi: {name}", .explanation = "JupyterLab'ın ayarları ve oturumları.", .quitApps = {"JupyterLab"}},
    {.path = "$config/jupyterlab-desktop/{jlab_server,envs}", .level = SafetyLevel::caution, .title = "JupyterLab ortamı", .explanation = "JupyterLab'ın kurduğu Python ortamı. Silersen yeniden kurman gerekir.", .quitApps = {"JupyterLab"}},
    {.path = "$cache/matplotlib", .level = SafetyLevel::regenerable, .title = "Matplotlib önbelleği", .explanation = "Yazı tipi listesi ve hazırlanmış formüller. Silinirse yeniden oluşur."},
    {.path = "~/.spyder-py3", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Spyder ayarları", .explanation = "Spyder ayarların ve komut geçmişin.", .quitApps = {"Spyder"}},
    {.path = "$data/rstudio", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "RStudio verisi: {name}", .explanation = "Oturumların, komut geçmişin ve kaydedilmemiş dosyaların.", .quitApps = {"RStudio"}, .processes = {"rstudio", "rsession"}},

    // Mathematics.
    {.path = "~/.matlab", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "MATLAB ayarları", .explanation = "MATLAB ayarların, lisansın ve komut geçmişin.", .processes = {"MATLAB"}},
    {.path = "~/.MathWorks", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "MathWorks dosyaları: {name}", .explanation = "MATLAB'ın yardımcı hizmetleri. Silersen MATLAB yeniden indirir ve yeniden giriş isteyebilir.", .processes = {"MATLAB", "MathWorksServic*"}},
    {.path = "~/.MathWorks/ServiceHost/*/logs", .level = SafetyLevel::safe, .title = "MathWorks kayıtları", .explanation = "Yardımcı hizmetin günlükleri. Silmek güvenli."},
    {.path = "~/MATLAB", .container = ScanContext::personal},
    {.path = "~/MATLAB/R20*", .level = SafetyLevel::caution, .title = "MATLAB {name}", .explanation = "Kurulu bir MATLAB sürümü. Kullanmıyorsan kaldırıcısıyla kaldır; lisansınla tekrar kurabilirsin.", .processes = {"MATLAB"}},
    {.path = "/usr/local/MATLAB", .level = SafetyLevel::caution, .title = "MATLAB", .explanation = "Kurulu MATLAB sürümleri. Kullanmadıklarını kaldırıcısıyla kaldır; lisansınla tekrar kurabilirsin.", .actionable = false},
    {.name = "slprj", .siblings = {"*.slx", "*.mdl", "*.slxc"}, .level = SafetyLevel::regenerable, .title = "{parent} · slprj", .explanation = "Simulink'in ürettiği kod ve ara dosyalar. Bir sonraki benzetimde yeniden oluşur."},
    {.path = "~/{.Mathematica,.Wolfram,.WolframEngine}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Wolfram verisi: {name}", .explanation = "Wolfram ayarların, lisansın ve eklentilerin."},
    {.path = "~/{.Mathematica,.Wolfram,.WolframEngine}/Paclets", .level = SafetyLevel::caution, .title = "Wolfram paketleri", .explanation = "İndirilen veri ve eklenti paketleri. Silinirse gerektiğinde tekrar indirilir; elle kurduklarını yeniden kurman gerekir."},
    {.path = "~/.sage", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "SageMath verisi", .explanation = "SageMath defterlerin, geçmişin ve ayarların."},
    {.path = "~/.sage/cache", .level = SafetyLevel::regenerable, .title = "SageMath önbelleği", .explanation = "SageMath'ın hazırladığı dosyalar. Silinirse yeniden oluşur."},
    {.path = "~/.sage/temp", .level = SafetyLevel::safe, .title = "SageMath geçici dosyaları", .explanation = "Oturumlardan kalan geçici dosyalar. SageMath kapalıysa silmek güvenli.", .processes = {"sage*"}},
    {.path = "$data/octave", .level = SafetyLevel::caution, .title = "Octave paketleri", .explanation = "`pkg install` ile kurduğun paketler. Silersen yeniden kurman gerekir.", .quitApps = {"GNU Octave"}, .processes = {"octave*"}},

    // Maps and the earth.
    {.path = "$data/QGIS/QGIS[34]", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "QGIS verisi: {name}", .explanation = "QGIS profillerin, eklentilerin ve bağlantıların.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.path = "$data/QGIS/QGIS[34]/profiles", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "QGIS profili: {name}", .explanation = "QGIS profillerin, eklentilerin ve bağlantıların.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.path = "$data/QGIS/QGIS[34]/profiles/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "QGIS profili: {name}", .explanation = "QGIS profillerin, eklentilerin ve bağlantıların.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.path = "$data/QGIS/QGIS[34]/profiles/*/cache", .level = SafetyLevel::regenerable, .title = "QGIS harita önbelleği", .explanation = "İndirilen harita parçaları. Silinirse haritalar açılınca tekrar indirilir.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.path = "$data/QGIS/QGIS[34]/profiles/*/python/plugins", .level = SafetyLevel::caution, .title = "QGIS eklentileri", .explanation = "Kurulu eklentiler. Silersen yeniden kurman gerekir; kendi yazdıkların gelmez.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.path = "$cache/QGIS", .level = SafetyLevel::regenerable, .title = "QGIS önbelleği", .explanation = "İndirilen harita parçaları. Silinirse haritalar açılınca tekrar indirilir.", .quitApps = {"QGIS Desktop"}, .processes = {"qgis*"}},
    {.name = "grassdata", .level = SafetyLevel::keep, .title = "GRASS GIS verisi", .explanation = "Haritaların ve çözümlemelerin. Geri gelmez.", .actionable = false},
    {.path = "~/.snap/auxdata", .level = SafetyLevel::regenerable, .title = "SNAP yardımcı verisi", .explanation = "Uydu görüntüsü işleme için indirilen yükseklik ve yörünge verileri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.snap/var/cache", .level = SafetyLevel::regenerable, .title = "SNAP önbelleği", .explanation = "Uydu görüntüsü işlemeden kalan ara dosyalar. Silinirse yeniden oluşur."},

    // Physics and the sky.
    {.path = "~/.astropy", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Astropy ayarları", .explanation = "Astropy'nin ayarları."},
    {.path = "~/.astropy/cache", .level = SafetyLevel::regenerable, .title = "Astropy önbelleği", .explanation = "İndirilen gökbilim verileri. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/.casa/data", .level = SafetyLevel::regenerable, .title = "CASA verisi", .explanation = "Radyo gökbilimi için indirilen ölçüm tabloları. Silinirse gerektiğinde tekrar indirilir."},
    {.name = "{G4*[0-9].[0-9]*,RealSurface[0-9].*,PhotonEvaporation[0-9].*,RadioactiveDecay[0-9].*}", .siblings = {"G4EMLOW*", "G4ENSDFSTATE*"}, .level = SafetyLevel::regenerable, .title = "Geant4 verisi: {name}", .explanation = "Geant4'ün fizik tabloları. Silinirse `geant4-config --install-datasets` tekrar indirir; o zamana kadar benzetimler çalışmaz."},

    // Biology.
    {.path = "~/.nextflow", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Nextflow verisi: {name}", .explanation = "Nextflow ayarların, anahtarların ve geçmişin."},
    {.path = "~/.nextflow/{framework,plugins,capsule,tmp}", .level = SafetyLevel::regenerable, .title = "Nextflow indirmeleri: {name}", .explanation = "Nextflow'un kendi parçaları. Silinirse bir sonraki çalıştırmada tekrar indirilir."},
    {.path = "~/.nextflow/assets", .level = SafetyLevel::caution, .title = "Nextflow iş akışları", .explanation = "`nextflow pull` ile indirilen iş akışları; içlerinde yaptığın değişiklikler gider. Silinirse tekrar indirilir."},
    {.name = "work", .siblings = {".nextflow.log", ".nextflow", "nextflow.config"}, .level = SafetyLevel::caution, .title = "{parent} · Nextflow ara sonuçları", .explanation = "Adımların ara sonuçları; sonuç klasöründekiler buraya bağlantı olabilir. Silersen `-resume` baştan başlar. Önce sonuçları kontrol et; araç: `nextflow clean`."},
    {.name = ".snakemake", .level = SafetyLevel::caution, .title = "{parent} · .snakemake", .explanation = "Snakemake'in ortamları ve çalışma bilgileri. Ortamlar yeniden kurulur, hangi sonucun nasıl oluştuğu bilgisi gelmez."},
    {.path = "~/ncbi", .container = ScanContext::personal},
    {.path = "~/ncbi/public", .container = ScanContext::personal},
    {.path = "~/ncbi/public/{sra,refseq,cache,tmp}", .level = SafetyLevel::regenerable, .title = "SRA indirmeleri: {name}", .explanation = "`prefetch` ile indirilen dizileme verileri. Silinirse gerektiğinde tekrar indirilir (uzun sürebilir)."},
    {.path = "~/.vep", .level = SafetyLevel::caution, .title = "Ensembl VEP verisi", .explanation = "Varyant yorumlama için indirilen veriler ve eklentiler. Silersen `vep_install` ile tekrar indirmen gerekir (15 GB ve üstü)."},
    {.path = "~/igv", .container = ScanContext::personal},
    {.path = "~/igv/genomes", .level = SafetyLevel::caution, .title = "IGV genomları", .explanation = "İndirilen genomlar; kendi eklediklerin de burada olabilir. İndirilenler tekrar gelir."},
    {.path = "~/.etetoolkit", .level = SafetyLevel::regenerable, .title = "ETE veritabanı", .explanation = "İndirilen canlı sınıflandırması. Silinirse gerektiğinde tekrar indirilir."},
    {.path = "~/CytoscapeConfiguration", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Cytoscape ayarları", .explanation = "Cytoscape ayarların ve eklentilerin.", .quitApps = {"Cytoscape"}},

    // Large computers.
    {.path = "~/.spack", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Spack ayarları", .explanation = "Spack ayarların ve depo anahtarların."},
    {.path = "~/.spack/cache", .level = SafetyLevel::regenerable, .title = "Spack önbelleği", .explanation = "Paket listelerinin dizini. Silinirse yeniden oluşur. İpucu: `spack clean --misc-cache`."},
    {.path = "~/.spack/bootstrap", .level = SafetyLevel::regenerable, .title = "Spack başlangıç araçları", .explanation = "Spack'in kendisi için derlediği araçlar. Silinirse yeniden kurulur. İpucu: `spack clean --bootstrap`."},
    {.name = "opt/spack", .level = SafetyLevel::caution, .title = "Spack ile kurulu paketler", .explanation = "Derlenmiş programlar ve kitaplıklar. Kullanılmayanlar için `spack gc`; silersen yeniden derlemen gerekir (uzun sürebilir)."},
    {.name = "var/spack/cache", .level = SafetyLevel::regenerable, .title = "Spack indirmeleri", .explanation = "Derlenen paketlerin kaynakları. Silinirse gerektiğinde tekrar indirilir. İpucu: `spack clean --downloads`."},
    {.path = "~/.local/easybuild", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "EasyBuild: {name}", .explanation = "EasyBuild ile derlenen programlar. Silersen yeniden derlemen gerekir."},
    {.path = "~/.local/easybuild/sources", .level = SafetyLevel::caution, .title = "EasyBuild kaynakları", .explanation = "Derlenen programların kaynakları; elle koydukların kendiliğinden gelmez. İndirilenler tekrar gelir."},
    {.path = "~/.local/easybuild/build", .level = SafetyLevel::regenerable, .title = "EasyBuild derleme artıkları", .explanation = "Derlemelerden kalan ara dosyalar. Silinirse yeniden oluşur.", .processes = {"eb"}},
    {.path = "$cache/dask", .level = SafetyLevel::regenerable, .title = "Dask önbelleği", .explanation = "Dask'ın çalışma dosyaları. Silinirse yeniden oluşur."},
    {.name = "dask-worker-space", .level = SafetyLevel::regenerable, .title = "{parent} · Dask çalışma alanı", .explanation = "Hesaplamaların belleğe sığmayan ara sonuçları. Hesaplama sürmüyorsa işe yaramaz; yeniden oluşur.", .processes = {"dask*"}},
    {.name = "{spark-warehouse,metastore_db}", .level = SafetyLevel::keep, .title = "{parent} · {name}", .explanation = "Spark tabloların. Geri gelmez.", .actionable = false},
};
// clang-format on

}  // namespace

Rows scienceRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
